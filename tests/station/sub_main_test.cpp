#include <fstream>

#include "platform/file_ops.h"
#include "station_fixture.h"

namespace tavora {
namespace {

using SubMain = StationTest;

TEST_F(SubMain, FirstStartReachesTheIdleStateAndLeavingSavesTheSessionOnce) {
    ASSERT_TRUE(start());
    EXPECT_TRUE(asked().empty());
    EXPECT_EQ(read_file("qxbp.ini"),
              "0\r\n0\r\n2\r\n5\r\nFalse\r\nTrue\r\nFalse\r\n7\r\n0\r\nTrue\r\n2\r\n210\r\n"
              "7950\r\n11565\r\n525\r\n2\r\n3\r\n15\r\n");
    EXPECT_EQ(app->station.Run_Mode, 0);
    EXPECT_TRUE(files::Exists(home() / "qxlast.mdb"));
    EXPECT_TRUE(files::Exists(home() / "tqxiis.ini"));
    // The main and request windows up; the about box and Setup not loaded.
    EXPECT_EQ((std::vector<bool>{app->qx_main.Visible, app->request.Visible, app->about.Visible,
                                 app->setup.Loaded}),
              (std::vector<bool>{true, true, false, false}));
    EXPECT_EQ(app->qx_main.Panel(8).Text, "0");
    EXPECT_EQ(app->station.Log_Name, "C:\\tavora\\qxl39.log");

    // Leaving saves the session once, however many ways it is asked for.
    int ends = 0;
    app->on_end = [&] { ++ends; };
    app->station.BP_Block = 6;
    app->qx_main.click("mnu_File_Exit");
    app->Shutdown();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(read_file("qxbp.ini").substr(0, 9), "0\r\n0\r\n6\r\n");
}

// The other lines read as in any session file.
TEST_F(SubMain, OldSixteenLineSettingsKeepOneSnipit) {
    std::ofstream(home() / "qxbp.ini", std::ios::binary)
        << "0\r\n0\r\n2\r\n5\r\nFalse\r\nFalse\r\nFalse\r\n9\r\n0\r\nTrue\r\n2\r\n210\r\n7950\r\n"
           "11565\r\n525\r\n2\r\n";
    ASSERT_TRUE(start());
    EXPECT_EQ(app->station.Snip_Max, 1);
}

// Auto start gives run mode two on the local drive; a library on another
// drive means remote use, without compaction and with auto start overruled.
TEST_F(SubMain, AutoStartRunsLocallyAndALibraryOnAnotherDriveMeansRemoteUse) {
    edit_rows("Setup.mdb", "Setup",
              {{"Use Playlist", Value::boolean(true)}, {"Use Schedule", Value::boolean(true)}});
    ASSERT_TRUE(start());
    EXPECT_EQ(app->station.Run_Mode, 2);
    EXPECT_TRUE(files::Exists(home() / "qxlast.mdb"));

    std::filesystem::remove(home() / "qxlast.mdb");
    std::filesystem::create_directories(home() / "share");
    fake.paths.SetDrive('d', home() / "share");
    ASSERT_TRUE(files::Copy(home() / "qx1.mdb", home() / "share" / "qx1.mdb"));
    edit_rows("Setup.mdb", "Setup", {{"Active Database", Value("D:\\qx1.mdb")}});
    ASSERT_TRUE(start());
    EXPECT_EQ(app->station.Run_Mode, 1);
    EXPECT_FALSE(files::Exists(home() / "qxlast.mdb"));
    // Opening Setup reads the remote box without touching the mode.
    app->qx_main.click("mnu_Options_Setup");
    EXPECT_EQ(app->station.Run_Mode, 1);
    app->qx_main.click("mnu_File");
    EXPECT_FALSE(app->qx_main.mnu_File_Run.Enabled);
}

TEST_F(SubMain, StartUpGivesEveryCategoryItsWorkingWeight) {
    // Two new ones: the weight table's first row stands for no category,
    // so the sync only walks when the categories outnumber it.
    for (const char* type : {"Jazz", "Blues"})
        add_row("Type Lookup", {{"Type", Value(type)}});
    ASSERT_TRUE(start());
    EXPECT_EQ(rows("SELECT * FROM DSearch WHERE Category = 'Jazz'", {"ValidFiles", "ExcludeFiles"}),
              std::vector<std::string>{"15|99"});
}

TEST_F(SubMain, CategoryOverrideMenuStaysOffWhileItsWindowIsOpen) {
    ASSERT_TRUE(start());
    app->qx_main.click("Catover");
    EXPECT_FALSE(app->qx_main.Catover.Enabled);
    EXPECT_TRUE(app->form2.Visible);
    app->form2.click("Command2");
    EXPECT_FALSE(app->form2.Loaded);
    EXPECT_TRUE(app->qx_main.Catover.Enabled);
}

// An empty answer ends the program; a wrong one offers the default.
TEST_F(SubMain, MissingLibraryAskedForUntilOneIsFoundOrTheProgramEnds) {
    edit_rows("Setup.mdb", "Setup", {{"Active Database", Value("c:\\tavora\\gone.mdb")}});
    fake.dialogs.Queue(Answer::Cancel);
    EXPECT_FALSE(start());
    EXPECT_TRUE(app->ended());
    EXPECT_FALSE(app->qx_main.Visible);

    fake.dialogs.QueueText("c:\\tavora\\nowhere.mdb");
    fake.dialogs.Queue(Answer::Yes);  // try the default
    ASSERT_TRUE(start());
    const auto& question = fake.dialogs.shown()[1].request;
    EXPECT_EQ(question.default_text, "c:\\tavora\\gone.mdb");
    const std::string missing = "TQXMS DATABASE MISSING!!!: " + question.text;
    const std::vector<std::string> expected{
        missing, missing,
        "Ouch!: THAT Didn't Work! Do you want to try the default (c:\\tavora\\qx1.mdb)?",
        ": Your Database hase been changed to: c:\\tavora\\qx1.mdb"};
    EXPECT_EQ(asked(), expected);
    EXPECT_EQ(app->station.Act_Db, "c:\\tavora\\qx1.mdb");
}

TEST_F(SubMain, FailedCompactionLeavesTheSetupScreenAlone) {
    std::ofstream(home() / "qx1.mdb", std::ios::binary | std::ios::trunc) << "damaged";
    EXPECT_FALSE(start());
    EXPECT_FALSE(app->ended());
    EXPECT_EQ(app->station.Cmp_Fail, 1);
    EXPECT_TRUE(app->setup.Visible);
    EXPECT_FALSE(app->qx_main.Visible);
    EXPECT_FALSE(app->request.Loaded);
    EXPECT_EQ(read_file("qx1.mdb"), "damaged");
}

TEST_F(SubMain, LogViewerHandsTheChosenLogToTheTextViewer) {
    ASSERT_TRUE(start());
    fake.dialogs.QueueText("c:\\tavora\\qxl39.log");
    app->qx_main.click("Log_View");
    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(fake.dialogs.shown()[0].request.title, "Tavora Logfile Search");
    EXPECT_EQ(fake.dialogs.shown()[0].request.filter, "TQX Log Files|*.log");
    EXPECT_EQ(fake.launcher.opened, std::vector<std::string>{(home() / "qxl39.log").string()});
}

TEST_F(SubMain, NormalisationTurnedOnInSetupStartsTheMeasuringAtOnce) {
    std::ofstream(home() / "tavora.ini") << "Loudness Normalise=0\r\n";
    ASSERT_TRUE(start());
    EXPECT_FALSE(app->measuring_loudness());
    for (const bool on : {true, false}) {
        app->setup.Form_Load();
        ASSERT_TRUE(app->setup.set("chkLoudness", -1, on ? "1" : "0"));
        app->setup.Command1_Click();
        EXPECT_EQ(app->measuring_loudness(), on);
    }
    EXPECT_TRUE(asked().empty());
}

}  // namespace
}  // namespace tavora
