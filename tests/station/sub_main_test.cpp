#include <gtest/gtest.h>

#include <fstream>

#include "fake_services.h"
#include "platform/file_ops.h"
#include "runtime/dates.h"
#include "station/station_app.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {
namespace {

const double kMonday = DateSerial(2026, 3, 9) + 0.5;

class SubMain : public ::testing::Test {
  protected:
    SubMain() : fake(kMonday) {}

    void SetUp() override {
        ASSERT_EQ(create_settings_file(home() / "Setup.mdb", kMonday), "");
        ASSERT_EQ(create_library_file(home() / "qx1.mdb", kMonday), "");
    }

    void set_setup(const std::string& field, const Value& value) {
        auto settings = Library::open(home() / "Setup.mdb", FileKind::Settings).library;
        ASSERT_TRUE(settings);
        Recordset row;
        ASSERT_TRUE(row.Open(settings, "Setup"));
        row.Edit();
        row.SetField(field, value);
        ASSERT_TRUE(row.Update());
    }

    std::string read_file(const char* name) {
        std::ifstream in(home() / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    const auto& dialogs() const { return fake.dialogs.shown(); }
    std::filesystem::path home() const { return fake.home(); }

    FakeServices fake;
};

TEST_F(SubMain, FirstStartReachesTheIdleStateWithDefaultFiles) {
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    EXPECT_FALSE(app.ended());
    EXPECT_TRUE(dialogs().empty());
    EXPECT_EQ(app.station.Snip_Max, 3);
    EXPECT_EQ(read_file("qxbp.ini"),
              "0\r\n0\r\n2\r\n5\r\nFalse\r\nTrue\r\nFalse\r\n7\r\n0\r\nTrue\r\n2\r\n210\r\n"
              "7950\r\n11565\r\n525\r\n2\r\n3\r\n15\r\n");
    EXPECT_EQ(app.station.Run_Mode, 0);
    EXPECT_EQ(app.station.Ply7_Mix, 7);
    EXPECT_TRUE(files::Exists(home() / "qxlast.mdb"));
    EXPECT_TRUE(files::Exists(home() / "tqxiis.ini"));
    EXPECT_TRUE(app.qx_main.Visible);
    EXPECT_TRUE(app.request.Visible);
    EXPECT_FALSE(app.about.Visible);
    EXPECT_FALSE(app.setup.Loaded);
    EXPECT_EQ(app.qx_main.Panel(8).Text, "0");
    EXPECT_EQ(app.station.Log_Name, "C:\\tavora\\qxl39.log");
}

TEST_F(SubMain, OldSixteenLineSettingsKeepOneSnipit) {
    std::ofstream(home() / "qxbp.ini", std::ios::binary)
        << "0\r\n0\r\n2\r\n5\r\nFalse\r\nFalse\r\nFalse\r\n9\r\n0\r\nTrue\r\n2\r\n210\r\n7950\r\n"
           "11565\r\n525\r\n2\r\n";
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    EXPECT_EQ(app.station.Snip_Max, 1);
    EXPECT_EQ(app.station.Ply7_Mix, 9);
    EXPECT_TRUE(app.station.Ply7_View);
}

TEST_F(SubMain, LibraryOnAnotherDriveMeansRemoteUseWithoutCompaction) {
    std::filesystem::create_directories(home() / "share");
    fake.paths.SetDrive('d', home() / "share");
    ASSERT_TRUE(files::Copy(home() / "qx1.mdb", home() / "share" / "qx1.mdb"));
    set_setup("Active Database", Value("D:\\qx1.mdb"));
    set_setup("Use Schedule", Value::boolean(true));  // auto start, overruled
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    EXPECT_EQ(app.station.Run_Mode, 1);
    EXPECT_FALSE(files::Exists(home() / "qxlast.mdb"));
    // Opening Setup reads the remote box without touching the mode.
    app.qx_main.click("mnu_Options_Setup");
    EXPECT_EQ(app.station.Run_Mode, 1);
    app.qx_main.click("mnu_File");
    EXPECT_FALSE(app.qx_main.mnu_File_Run.Enabled);
}

TEST_F(SubMain, AutoStartOnTheLocalDriveGivesRunModeTwo) {
    set_setup("Use Playlist", Value::boolean(true));
    set_setup("Use Schedule", Value::boolean(true));
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    EXPECT_EQ(app.station.Run_Mode, 2);
    EXPECT_TRUE(files::Exists(home() / "qxlast.mdb"));
}

TEST_F(SubMain, StartUpGivesEveryCategoryItsWorkingWeight) {
    {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        ASSERT_TRUE(library);
        // Two new ones: the weight table's first row stands for no category,
        // so the sync only walks when the categories outnumber it.
        Recordset types = OpenRecordset(library, "Type Lookup");
        for (const char* type : {"Jazz", "Blues"}) {
            types.AddNew();
            types.SetField("Type", type);
            ASSERT_TRUE(types.Update());
        }
    }
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
    Recordset weights = OpenRecordset(library, "DSearch");
    int jazz = 0;
    for (weights.MoveFirst(); !weights.IsEOF(); weights.MoveNext()) {
        if (weights.Fields("Category").text() != "Jazz") continue;
        ++jazz;
        EXPECT_EQ(weights.Fields("ValidFiles").text(), "15");
        EXPECT_EQ(weights.Fields("ExcludeFiles").text(), "99");
    }
    EXPECT_EQ(jazz, 1);
}

TEST_F(SubMain, CategoryOverrideMenuStaysOffWhileItsWindowIsOpen) {
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    app.qx_main.click("Catover");
    EXPECT_FALSE(app.qx_main.Catover.Enabled);
    EXPECT_TRUE(app.form2.Visible);
    app.form2.click("Command2");
    EXPECT_FALSE(app.form2.Visible);
    EXPECT_FALSE(app.form2.Loaded);
    EXPECT_TRUE(app.qx_main.Catover.Enabled);
}

TEST_F(SubMain, AdvancedSchedMenuOpensTheChartsOnAnEmptyLibrary) {
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    app.qx_main.click("AdvSched");
    EXPECT_TRUE(app.advschedule.Visible);
    ASSERT_FALSE(dialogs().empty());
    EXPECT_EQ(dialogs().back().request.text, "No records found for Top40");
    EXPECT_EQ(app.advschedule.datPrimaryRS.Tag, "Title Sort");
}

TEST_F(SubMain, MissingLibraryAskedForUntilOneIsFound) {
    set_setup("Active Database", Value("c:\\tavora\\gone.mdb"));
    fake.dialogs.QueueText("c:\\tavora\\nowhere.mdb");
    fake.dialogs.Queue(Answer::Yes);  // try the default
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    ASSERT_GE(dialogs().size(), 3u);
    EXPECT_EQ(dialogs()[0].request.title, "TQXMS DATABASE MISSING!!!");
    EXPECT_EQ(dialogs()[0].request.default_text, "c:\\tavora\\gone.mdb");
    EXPECT_EQ(dialogs()[1].request.text,
              "THAT Didn't Work! Do you want to try the default (c:\\tavora\\qx1.mdb)?");
    EXPECT_EQ(dialogs()[1].request.title, "Ouch!");
    EXPECT_EQ(dialogs()[2].request.text, "Your Database hase been changed to: c:\\tavora\\qx1.mdb");
    EXPECT_EQ(app.station.Act_Db, "c:\\tavora\\qx1.mdb");
}

TEST_F(SubMain, EmptyAnswerToTheLibraryQuestionEndsTheProgram) {
    set_setup("Active Database", Value("c:\\tavora\\gone.mdb"));
    fake.dialogs.Queue(Answer::Cancel);
    StationApp app(fake.services);
    EXPECT_FALSE(app.Sub_Main());
    EXPECT_TRUE(app.ended());
    EXPECT_FALSE(app.qx_main.Visible);
}

TEST_F(SubMain, FailedCompactionLeavesTheSetupScreenAlone) {
    std::ofstream(home() / "qx1.mdb", std::ios::binary | std::ios::trunc) << "damaged";
    StationApp app(fake.services);
    EXPECT_FALSE(app.Sub_Main());
    EXPECT_FALSE(app.ended());
    EXPECT_EQ(app.station.Cmp_Fail, 1);
    EXPECT_TRUE(app.setup.Visible);
    EXPECT_FALSE(app.qx_main.Visible);
    EXPECT_FALSE(app.request.Loaded);
    EXPECT_EQ(read_file("qx1.mdb"), "damaged");
}

TEST_F(SubMain, ShutdownSavesTheSessionOnce) {
    StationApp app(fake.services);
    int ends = 0;
    app.on_end = [&] { ++ends; };
    ASSERT_TRUE(app.Sub_Main());
    app.station.BP_Block = 6;
    app.qx_main.click("mnu_File_Exit");
    app.Shutdown();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(read_file("qxbp.ini").substr(0, 9), "0\r\n0\r\n6\r\n");
}

TEST_F(SubMain, LogViewerHandsTheChosenLogToTheTextViewer) {
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    fake.dialogs.QueueText("c:\\tavora\\qxl39.log");
    app.qx_main.click("Log_View");
    ASSERT_EQ(dialogs().size(), 1u);
    EXPECT_EQ(dialogs()[0].request.title, "Tavora Logfile Search");
    EXPECT_EQ(dialogs()[0].request.filter, "TQX Log Files|*.log");
    ASSERT_EQ(fake.launcher.opened.size(), 1u);
    EXPECT_EQ(fake.launcher.opened[0], (home() / "qxl39.log").string());
}

TEST_F(SubMain, NormalisationTurnedOnInSetupStartsTheMeasuringAtOnce) {
    std::ofstream(home() / "tavora.ini") << "Loudness Normalise=0\r\n";
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    EXPECT_FALSE(app.measuring_loudness());

    auto save_with_normalising = [&app](const char* on) {
        app.setup.Form_Load();
        ASSERT_TRUE(app.setup.set("chkLoudness", -1, on));
        app.setup.Command1_Click();
    };
    save_with_normalising("1");
    EXPECT_TRUE(app.measuring_loudness());
    save_with_normalising("0");
    EXPECT_FALSE(app.measuring_loudness());
    EXPECT_TRUE(dialogs().empty());
}

}  // namespace
}  // namespace tavora
