#include "request_fixture.h"

namespace tavora {
namespace {

using RequestEntry = RequestFixture;

TEST_F(RequestEntry, PressesCountEveryCounterButListMembersAndPriorityOnesStay) {
    const long long id = add("Song", {{"RTW", Value(2)}, {"Request AllTime", Value(7)}});
    const long long member = add("Member", {{"Sel", Value(1000)}, {"RTW", Value(1)}});
    const long long hot = add("Priority", {{"Sel", Value(50)}});
    request->Form_Load();
    const int row = row_of("Song");
    for (int i = 0; i < 3; ++i)
        request->click("RB", row);
    EXPECT_TRUE(
        has(id, {{"Sel", 3}, {"RTW", 5}, {"Request This Month", 3}, {"Request AllTime", 10}}));
    EXPECT_EQ(request->RD(row).Caption, "3");
    for (int i = 0; i < 4; ++i)
        request->click("RD", row);  // the fourth finds Sel at 0
    EXPECT_TRUE(
        has(id, {{"Sel", 0}, {"RTW", 2}, {"Request This Month", 0}, {"Request AllTime", 7}}));

    request->click("RD", row_of("Member"));
    EXPECT_TRUE(has(member, {{"Sel", 1000}, {"RTW", 1}}));
    request->click("RB", row_of("Priority"));
    EXPECT_EQ(field(hot, "Sel").number(), 51);
}

TEST_F(RequestEntry, HoldPaintsTheButtonAndTheMarqueeWhilePressesStillCount) {
    const long long id = add("Song");
    request->Form_Load();
    request->TimerMar_Timer();  // the daily playlist run of the start-up, done before the hold
    request->click("Command8");
    EXPECT_EQ(station.Req_Hold, 1);
    EXPECT_EQ(request->Command8.BackColor, 65535);
    request->TimerMar_Timer();
    EXPECT_EQ(request->Label15.Caption, "A L L  R E Q U E S T S  A R E  O N  H O L D");
    EXPECT_EQ(request->Label15.ForeColor, 65535);
    request->click("RB", 1);
    EXPECT_EQ(field(id, "Sel").number(), 1);
    request->click("Command8");
    EXPECT_EQ(station.Req_Hold, 0);
    EXPECT_EQ(request->Command8.BackColor, kButtonFace);
}

TEST_F(RequestEntry, ListBuildingNumbersPressesAndAsksWhereToGoOn) {
    const long long a = add("A Song");
    const long long b = add("B Song");
    request->Form_Load();
    station.PL_Build = 10;
    station.PL_Next = 1;
    request->click("RB", row_of("A Song"));
    request->click("RB", row_of("B Song"));
    request->click("RB", row_of("A Song"));  // moves it to the current number
    EXPECT_TRUE(has(a, {{"Sel", 3}}));
    EXPECT_TRUE(has(b, {{"Sel", 2}}));
    EXPECT_EQ(station.PL_Next, 4);

    fake.dialogs.Queue(Answer::Cancel);
    request->click("RD", row_of("B Song"));
    EXPECT_TRUE(has(b, {{"Sel", 0}, {"RTW", 0}}));
    const DialogRequest& asked = fake.dialogs.shown().back().request;
    EXPECT_EQ(asked.text,
              "Enter the number to Continue The Count From.  Or Press Cancel to Clear this "
              "selection");
    EXPECT_EQ(asked.default_text, "3");
    EXPECT_EQ(station.PL_Next, 1);

    fake.dialogs.QueueText("7");
    request->click("RD", row_of("A Song"));
    EXPECT_EQ(station.PL_Next, 7);
}

}  // namespace
}  // namespace tavora
