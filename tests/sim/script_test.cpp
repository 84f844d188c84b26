#include <gtest/gtest.h>

#include "sim/script.h"

namespace tavora {
namespace {

TEST(Script, ReadsEveryActionInTimeOrder) {
    const Script script = parse_script(
        "# a day at the venue\r\n"
        "00:10:00 click Request.RB(3)\r\n"
        "\r\n"
        "00:00:05 click QXMain.mnu_File_Run\n"
        "00:10:00 answer Yes\n"
        "01:00:00 set Request.Text1 Blue Harbor\n"
        "02:00:00 append c:\\tavora\\newreq.tqf 12, Amber Skyline\n"
        "25:00:00 write qxsm.ini 1\n"
        "26:00:00 close frmViewer\n");
    ASSERT_EQ(script.error, "");
    ASSERT_EQ(script.actions.size(), 7u);
    const auto& run = script.actions[0];
    EXPECT_EQ(run.line, 4);
    EXPECT_EQ(run.form, "QXMain");
    EXPECT_EQ(run.control, "mnu_File_Run");
    EXPECT_EQ(run.index, -1);
    // Lines of one time keep their file order: the press, then its answer.
    EXPECT_EQ(script.actions[1].control, "RB");
    EXPECT_EQ(script.actions[1].index, 3);
    EXPECT_EQ(script.actions[2].kind, ScriptAction::Kind::Answer);
    EXPECT_EQ(script.actions[2].text, "Yes");
    EXPECT_EQ(script.actions[3].text, "Blue Harbor");
    EXPECT_EQ(script.actions[4].path, "c:\\tavora\\newreq.tqf");
    EXPECT_EQ(script.actions[4].text, "12, Amber Skyline");
    EXPECT_EQ(script.actions[5].at_ms, 25 * 3'600'000LL);
    EXPECT_EQ(script.actions[6].kind, ScriptAction::Kind::Close);
    EXPECT_EQ(script.actions[6].form, "frmViewer");
}

TEST(Script, ABadLineIsReportedByNumberAndNothingRuns) {
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        {"00:00:01 click QXMain.mnu_File_Run\n0:00:02 click QXMain.Exit\n",
         "line 2: the time must be HH:MM:SS"},
        {"00:00:01 press Request.RB(1)\n", "line 1: unknown action \"press\""},
        {"\n\n00:00:01 click Request.RB(x)\n",
         "line 3: click needs FORM.CONTROL or FORM.CONTROL(INDEX)"},
        {"00:00:01 click RequestRB\n", "line 1: click needs FORM.CONTROL or FORM.CONTROL(INDEX)"},
        {"00:61:00 answer OK\n", "line 1: the time must be HH:MM:SS"},
        {"00:00:01 append\n", "line 1: append needs PATH TEXT"},
        {"00:00:01 cd insert\n", "line 1: cd needs insert FOLDER or eject"},
        {"00:00:01 cd eject now\n", "line 1: cd needs insert FOLDER or eject"},
        {"00:00:01 close\n", "line 1: close needs FORM"},
        {"00:00:01 close frmViewer now\n", "line 1: close needs FORM"},
    };
    for (const auto& c : cases) {
        const Script script = parse_script(c.text);
        EXPECT_EQ(script.error, c.error) << c.text;
        EXPECT_TRUE(script.actions.empty()) << c.text;
    }
}

TEST(Script, TheCdDriveTakesADiscFolderAndGivesItBack) {
    const Script script =
        parse_script("00:01:00 cd insert /srv/discs/Blue Album\n00:02:00 cd eject\n");
    ASSERT_EQ(script.error, "");
    ASSERT_EQ(script.actions.size(), 2u);
    EXPECT_EQ(script.actions[0].kind, ScriptAction::Kind::CdInsert);
    EXPECT_EQ(script.actions[0].path, "/srv/discs/Blue Album");
    EXPECT_EQ(script.actions[1].kind, ScriptAction::Kind::CdEject);
}

TEST(Script, DurationsInTheirFourUnits) {
    EXPECT_EQ(parse_duration("90s"), 90'000);
    EXPECT_EQ(parse_duration("45m"), 45 * 60'000);
    EXPECT_EQ(parse_duration("6h"), 6 * 3'600'000LL);
    EXPECT_EQ(parse_duration("2d"), 2 * 86'400'000LL);
    for (const char* bad : {"", "h", "0h", "-1h", "6", "6w", "1.5h", "6 h"}) {
        EXPECT_FALSE(parse_duration(bad).has_value()) << bad;
    }
}

}  // namespace
}  // namespace tavora
