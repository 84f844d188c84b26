#include "request_fixture.h"

namespace tavora {
namespace {

using RequestList = RequestFixture;

TEST_F(RequestList, SwitchesDecideWhichRecordsReachTheRows) {
    add("Alpha", {{"Source", Value("Snipit")}});
    add("Bravo");
    add("Charlie", {{"Type", Value("Holiday Mix")}});
    add("Delta", {{"Type", Value("Xmas")}});
    add("Echo", {{"Type", Value("holiday")}});  // the test is case-sensitive
    request->Form_Load();
    EXPECT_EQ(captions(), (std::vector<std::string>{"Bravo", "Echo"}));

    request->click("Command1");
    EXPECT_EQ(request->Command1.Caption, "S On");
    request->click("Command10");
    EXPECT_EQ(request->Command10.BackColor, 65280);
    // The page still begins where the skip left it.
    EXPECT_EQ(captions(), (std::vector<std::string>{"Bravo", "Charlie", "Delta", "Echo"}));
    request->click("Command3");
    EXPECT_EQ(captions().size(), 5u);
}

TEST_F(RequestList, RowColoursAndTipsFollowTheirOrder) {
    add("Charted", {{"C40", Value(5)}, {"T40", Value(3)}, {"Request This Month", Value(4)}});
    add("Fresh", {{"CreationDate", Value::date(kNow - 2)}});
    add("Member", {{"Sel", Value(1000)}, {"D40", Value(2)}});
    add("Plain", {{"Sel", Value(2)}});
    request->Form_Load();
    Control& charted = request->RB(row_of("Charted"));
    EXPECT_EQ(charted.BackColor, 16761087);
    EXPECT_EQ(charted.ToolTipText, "TOP 40 Pick #3");
    EXPECT_EQ(request->Row_Label(row_of("Charted")).Caption, "Charted Artist :->4");
    EXPECT_EQ(request->RB(row_of("Fresh")).ToolTipText, "N E W  S E L E C T I O N");
    EXPECT_EQ(request->RB(row_of("Fresh")).BackColor, 8438015);
    EXPECT_EQ(request->RB(row_of("Member")).BackColor, 255);
    EXPECT_EQ(request->RB(row_of("Member")).ToolTipText, "Play List Selection Cue In Process");
    EXPECT_EQ(request->RB(row_of("Plain")).BackColor, 8454016);
    EXPECT_EQ(request->RD(row_of("Plain")).Caption, "2");
}

TEST_F(RequestList, PagingWrapsAtTheBottomAndStopsAtTheTop) {
    for (int i = 0; i < 30; ++i)
        add("T" + std::string(i < 10 ? "0" : "") + std::to_string(i));
    request->Form_Load();
    EXPECT_EQ(request->List_Last, 29);
    request->click("Command3");
    EXPECT_EQ(request->List_Top, 0);
    request->click("Command4");
    request->click("Command4");
    EXPECT_EQ(captions(), (std::vector<std::string>{"T28", "T29"}));
    request->click("Command4");
    EXPECT_EQ(request->List_Top, 0);
    EXPECT_EQ(request->RB(1).Caption, "T00");
}

TEST_F(RequestList, EmptySortsFallBackToTitles) {
    add("Only Song");
    request->Form_Load();
    request->BtnSrt_Click(3);
    EXPECT_EQ(request->datPrimaryRS.RecordSource, "title Sort");
    EXPECT_EQ(request->Label16.Caption, "Sorted By MOST REQUESTED");
    EXPECT_EQ(captions(), std::vector<std::string>{"Only Song"});

    request->BtnSrt_Click(5);
    ASSERT_FALSE(fake.dialogs.shown().empty());
    const DialogRequest& told = fake.dialogs.shown().back().request;
    EXPECT_EQ(told.text, "Sorry, No Records Found For:  Sorted By DANCE Only");
    EXPECT_EQ(told.title, "Sort Changed to Title");
    EXPECT_EQ(request->Label16.Caption, "Sorted By TITLE Only");
    EXPECT_EQ(request->datPrimaryRS.RecordSource, "Title Sort");
    EXPECT_FALSE(request->Command2.Visible);

    fake.dialogs.Queue(Answer::No);
    request->BtnSrt_Click(2);
    EXPECT_EQ(request->Label16.Caption, "Sorted By Newest Music");
    EXPECT_FALSE(request->BLtr(0).Visible);
    request->BtnSrt_Click(1);
    EXPECT_EQ(request->Sort_Field, 2);
    EXPECT_TRUE(request->Command11.Visible);
}

// Punctuation sorts among the list's first rows but stands below every
// letter and digit, as a person reads it; case doesn't count.
TEST_F(RequestList, LetterJumpsStepsAndSearchPassOverPunctuationAndIgnoreCase) {
    for (const char* title : {"_Intro", "1999", "apple", "Avocado", "Cherry"})
        add(title);
    request->Form_Load();
    request->BLtr_Click(0);
    EXPECT_EQ(request->List_Top, 2);
    request->BLtr_Click(1);
    EXPECT_EQ(request->List_Top, 4);  // no "B": the next letter that has one
    request->BLtr_Click(25);
    EXPECT_EQ(fake.dialogs.shown().back().request.text, "Letter Not Found: Z");
    EXPECT_EQ(fake.dialogs.shown().back().request.title, "Search Aborted");
    EXPECT_EQ(request->List_Top, 0);

    EXPECT_EQ(captions(),
              (std::vector<std::string>{"1999", "_Intro", "apple", "Avocado", "Cherry"}));
    // "_Intro" stands below the digit it follows, so a step passes it over.
    for (int top : {2, 4}) {
        request->Command5_Click();
        EXPECT_EQ(request->List_Top, top);
    }
    request->Command2_Click();
    EXPECT_EQ(request->List_Top, 2);
    request->List_Top = 0;
    request->Command2_Click();
    EXPECT_EQ(request->List_Top, 4);  // wraps to the last group

    request->click("Command11");
    EXPECT_TRUE(request->DBCombo1.Visible);
    request->set("DBCombo1", -1, "Avocado");
    EXPECT_EQ(request->List_Top, 3);
    EXPECT_FALSE(request->DBCombo1.Visible);
}

}  // namespace
}  // namespace tavora
