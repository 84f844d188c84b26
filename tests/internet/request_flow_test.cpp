// Requests from the web file and the jukebox as the selection takes them.
#include <memory>

#include "internet/mailfrm.h"
#include "requests/request_form.h"
#include "runtime/text_file.h"
#include "selection/selection_fixture.h"

namespace tavora {
namespace {

class RequestFlow : public SelectionTest {
  protected:
    void SetUp() override {
        SelectionTest::SetUp();
        for (int i = 0; i < 4; ++i)
            add();
        // Off every day, so only a request can bring it on the air.
        wanted = add({{"Valid Monday", Value::boolean(false)},
                      {"Valid Tuesday", Value::boolean(false)},
                      {"Valid Wednesday", Value::boolean(false)},
                      {"Valid Thursday", Value::boolean(false)},
                      {"Valid Friday", Value::boolean(false)},
                      {"Valid Saturday", Value::boolean(false)},
                      {"Valid Sunday", Value::boolean(false)}});
        request = std::make_unique<Request>(station, fake.services, pool);
        request->Form_Load();
    }

    int row_of(const std::string& title) {
        for (int i = 1; i <= kRows; ++i) {
            if (request->RB(i).Visible && request->RB(i).Caption == title) return i;
        }
        return 0;
    }

    long wanted = 0;
    std::unique_ptr<Request> request;
};

TEST_F(RequestFlow, AWebRequestWaitsHalfAnHourThenPlays) {
    Mailfrm mail(station, fake.services, pool);
    mail.Form_Load();
    TextWriter file(fake.home() / "newreq.tqf", TextWriter::Mode::Create);
    file.write_line(field(wanted, "Title").text());
    file.close();
    mail.Check_File();
    ASSERT_EQ(field(wanted, "Sel").number(), 1);
    const long other = pick(3);
    EXPECT_NE(other, 0);
    EXPECT_NE(other, wanted);
    set_now(now() + 31.0 / 1440);
    EXPECT_EQ(pick(4), wanted);
    EXPECT_EQ(field(wanted, "Sel").number(), 0);
}

TEST_F(RequestFlow, HoldKeepsRequestsOffTheAirWhilePressesCount) {
    request->click("Command8");
    request->click("RB", row_of(field(wanted, "Title").text()));
    EXPECT_EQ(field(wanted, "Sel").number(), 1);
    const long other = pick(3);
    EXPECT_NE(other, 0);
    EXPECT_NE(other, wanted);
    request->click("Command8");
    EXPECT_EQ(pick(4), wanted);
}

TEST_F(RequestFlow, AManualPlaylistPlaysWhenItsMarkerComesUp) {
    const long first = wanted;
    const long second = 1;
    fake.dialogs.Queue(Answer::Yes);
    fake.dialogs.QueueText("Party");
    request->click("BtnSrt", 10);
    request->click("RB", row_of(field(first, "Title").text()));
    request->click("RB", row_of(field(second, "Title").text()));
    request->click("BtnSrt", 11);
    ASSERT_EQ(station.PL_Build, 0);

    request->BtnSrt_Click(0);
    request->click("RB", row_of("Party"));
    station.Cue_Slot = 3;
    selection.auto_run();
    EXPECT_EQ(station.PL_Marker, 1);
    EXPECT_EQ(field(first, "Sel").number(), 1001);
    EXPECT_EQ(field(second, "Sel").number(), 1002);
    const long a = pick(4);
    const long b = pick(5);
    EXPECT_TRUE((a == first && b == second) || (a == second && b == first)) << a << " " << b;
}

}  // namespace
}  // namespace tavora
