// Form1 on a whole station: disc images written here, a real library file,
// the probe players on virtual time, and the dialogs answered by script.
#include <gtest/gtest.h>

#include "disc_images.h"
#include "fake_services.h"
#include "runtime/dates.h"
#include "station/station_app.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {
namespace {

const double kMonday = DateSerial(2026, 3, 9) + 0.5;

class CdPlayer : public ::testing::Test {
  protected:
    CdPlayer() : fake(kMonday) {}

    void SetUp() override {
        ASSERT_EQ(create_settings_file(fake.home() / "Setup.mdb", kMonday), "");
        ASSERT_EQ(create_library_file(fake.home() / "qx1.mdb", kMonday), "");
        app = std::make_unique<StationApp>(fake.services);
        ASSERT_TRUE(app->Sub_Main());
        disc = make_disc(fake.home() / "disc", kThreeTracks);
    }

    // Opens the view with the disc in the drive and lets Timer1 read it.
    void open_with_disc() {
        EXPECT_TRUE(app->insert_cd(disc).empty());
        app->cd_player.CDButt_Click();
        seconds(1.5);
    }
    void seconds(double s) { fake.loop.run_for(static_cast<std::int64_t>(s * 1000)); }

    // The disc's rows in the library: (column) of each, in track order.
    std::vector<std::string> column(const std::string& name) {
        auto library = Library::open(fake.home() / "qx1.mdb", FileKind::Library).library;
        Recordset rows = OpenRecordset(library, "CDNow");
        std::vector<std::string> found;
        for (; !rows.IsEOF(); rows.MoveNext())
            found.push_back(rows.Fields(name).text());
        return found;
    }
    std::vector<std::string> asked() const {
        std::vector<std::string> words;
        for (const auto& shown : fake.dialogs.shown())
            words.push_back(shown.request.title + ": " + shown.request.text);
        return words;
    }

    FakeServices fake;
    std::unique_ptr<StationApp> app;
    std::filesystem::path disc;
};

TEST_F(CdPlayer, TheDiscKeyComesFromItsTimes) {
    open_with_disc();
    Form1& cd = app->cd_player;
    EXPECT_EQ(app->station.CD_Id, "CD116");
    EXPECT_EQ(cd.Label1.Caption, "ID = 116");
    EXPECT_EQ(cd.Label2.Caption, "Tracks: 3  Total time: 04:00:24");
    EXPECT_EQ(cd.CD_TrackLen[2], "00:50:00");
    EXPECT_TRUE(cd.CD_Loaded);
    EXPECT_TRUE(cd.play.Enabled);
}

TEST_F(CdPlayer, ANewDiscIsCataloguedWithTypedTitlesUntilTheSkip) {
    for (const char* text : {"Blue Album", "Song One", "Singer", ""})
        fake.dialogs.QueueText(text);
    fake.dialogs.Queue(Answer::No);  // keep asking after the empty title
    fake.dialogs.QueueText("Other Singer");
    fake.dialogs.QueueText("");
    fake.dialogs.Queue(Answer::Yes);  // skip the rest
    open_with_disc();
    EXPECT_EQ(fake.dialogs.pending(), 0u);
    EXPECT_EQ(asked(), (std::vector<std::string>{
                           "Enter Title: Enter Title For This CD",
                           "Enter Title: Enter Title For Track#1",
                           "Enter Artist: Enter Artist For Track#1",
                           "Enter Title: Enter Title For Track#2",
                           "Skip Entry?: Do You Want To Skip entering The rest of the info?",
                           "Enter Artist: Enter Artist For Track#2",
                           "Enter Title: Enter Title For Track#3",
                           "Skip Entry?: Do You Want To Skip entering The rest of the info?",
                       }));
    EXPECT_EQ(column("Title"), (std::vector<std::string>{"Song One", "Track 2", "Track 3"}));
    EXPECT_EQ(column("Artist"), (std::vector<std::string>{"Singer", "Other Singer", "CD116"}));
    EXPECT_EQ(column("Long title"), (std::vector<std::string>{"CD116 1", "CD116 2", "CD116 3"}));
    EXPECT_EQ(column("Format"), (std::vector<std::string>(3, "CD116")));
    EXPECT_EQ(column("Mix Out"), (std::vector<std::string>(3, "9")));
    EXPECT_EQ(column("Max Play Day"), (std::vector<std::string>(3, "12")));
    EXPECT_EQ(column("Max Play Week"), (std::vector<std::string>(3, "80")));
    EXPECT_EQ(column("Max Month"), (std::vector<std::string>(3, "320")));
    auto library = Library::open(fake.home() / "qx1.mdb", FileKind::Library).library;
    Recordset rows = OpenRecordset(library, "CDNow");
    EXPECT_EQ(rows.Fields(3).text(), "CD Media - Blue Album");
    EXPECT_EQ(rows.Fields(30).text(), "1");
    EXPECT_EQ(rows.Fields(31).text(), "On");
    EXPECT_NEAR(rows.Fields("Min Time Between Plays").number(), 1.0 / 24, 1e-9);
    EXPECT_NEAR(rows.Fields("Length").number() * 86400, 70, 1e-6);
    // A new disc is catalogued, not cued: the stop button or the next
    // reading of the disc cues it.
    EXPECT_EQ(app->station.CD_Mode, 0);
    // The station was idle: typing the titles doesn't start the transport.
    EXPECT_FALSE(app->playback.TimerViewer().Enabled());
}

TEST_F(CdPlayer, AKnownDiscComesBackWithItsRowsAndNoQuestions) {
    open_with_disc();
    const std::size_t first_questions = fake.dialogs.shown().size();
    app->eject_cd();
    seconds(1);
    Form1& cd = app->cd_player;
    EXPECT_FALSE(cd.CD_Loaded);
    EXPECT_FALSE(cd.play.Enabled);
    EXPECT_TRUE(cd.cmdClose.Enabled);
    EXPECT_EQ(cd.Label1.Caption, "");

    app->insert_cd(disc);
    seconds(1);
    EXPECT_EQ(fake.dialogs.shown().size(), first_questions);
    EXPECT_EQ(app->station.CD_Mode, 1);
    ASSERT_EQ(cd.DBGrid1.List.size(), 3u);
    EXPECT_EQ(cd.DBGrid1.List[1], "2  Track 2 - CD116  On");
    EXPECT_EQ(column("Format").size(), 3u);
}

TEST_F(CdPlayer, ATrackSwitchedOffIsSkipped) {
    open_with_disc();
    Form1& cd = app->cd_player;
    ASSERT_TRUE(cd.set("DBGrid1", -1, "2  Track 2 - CD116  On"));
    ASSERT_TRUE(cd.set("TrackOn", -1, "0"));
    EXPECT_EQ(column("CD on"), (std::vector<std::string>{"On", "Off", "On"}));

    cd.click("play");
    seconds(2);
    EXPECT_EQ(cd.CD_Track, 1);
    ASSERT_TRUE(cd.set("TrackNo", -1, "2"));
    cd.click("Seek_Trk");
    seconds(1);
    EXPECT_EQ(cd.CD_Track, 2);
    EXPECT_EQ(cd.CD_Wait, 1);
    seconds(1);
    EXPECT_EQ(cd.CD_Track, 3);
    EXPECT_TRUE(cd.CD_Playing);
    EXPECT_EQ(cd.Caption, "Track 3 - CD116 - Tavora");
    EXPECT_EQ(cd.Frame1.Caption, "CD Media - CD116");
}

// A disc the operator has scheduled, with its days, goes by the rules, one
// track an hour; a track switched off is never offered; when the rules have
// nothing left, the CD fallback takes the wanted track played longest ago.
TEST_F(CdPlayer, SelectionCuesTheWantedTracksOfTheDiscInTurn) {
    open_with_disc();
    Form1& cd = app->cd_player;
    ASSERT_TRUE(cd.set("DBGrid1", -1, "2  Track 2 - CD116  On"));
    ASSERT_TRUE(cd.set("TrackOn", -1, "0"));
    {
        auto library = Library::open(fake.home() / "qx1.mdb", FileKind::Library).library;
        Recordset rows = OpenRecordset(library, "CDNow");
        for (; !rows.IsEOF(); rows.MoveNext()) {
            rows.Edit();
            rows.SetField("Schedule Select", Value(1));
            rows.SetField("Last Played", Value::date(kMonday - 2));
            for (const char* day :
                 {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"})
                rows.SetField(std::string("Valid ") + day, Value::boolean(true));
            ASSERT_TRUE(rows.Update());
        }
    }
    Station& s = app->station;
    s.CD_Mode = 1;
    std::vector<PickReport::Way> ways;
    app->selection.hooks.on_pick = [&ways](const PickReport& pick) {
        if (pick.slot == kCdSlot) ways.push_back(pick.way);
    };
    std::vector<int> tracks;
    for (int pick = 0; pick < 4; ++pick) {
        s.Cue_Slot = kCdSlot;
        s.Slot_Ready[kCdSlot] = 0;
        app->selection.auto_run();
        EXPECT_EQ(s.Slot_Ready[kCdSlot], 1);
        tracks.push_back(cd.CD_SeekTo);
        seconds(5);
    }
    using Way = PickReport::Way;
    EXPECT_EQ(ways, (std::vector<Way>{Way::Rules, Way::Rules, Way::CdFallback, Way::CdFallback}));
    ASSERT_EQ(tracks.size(), 4u);
    EXPECT_EQ(std::min(tracks[0], tracks[1]), 1);
    EXPECT_EQ(std::max(tracks[0], tracks[1]), 3);
    EXPECT_EQ(tracks[2], tracks[0]);
    EXPECT_EQ(tracks[3], tracks[1]);
}

TEST_F(CdPlayer, ADiscWhoseKeyAnotherDiscHoldsIsSaidAndNothingIsWritten) {
    {
        auto library = Library::open(fake.home() / "qx1.mdb", FileKind::Library).library;
        Recordset rows = OpenRecordset(library, "Recordings1");
        for (int t = 1; t <= 2; ++t) {
            rows.AddNew();
            rows.SetField("Title", Value("Other " + std::to_string(t)));
            rows.SetField("Long title", Value("CD116 " + std::to_string(t)));
            rows.SetField("Format", Value("CD116"));
            ASSERT_TRUE(rows.Update());
        }
    }
    open_with_disc();
    ASSERT_EQ(asked().size(), 1u);
    EXPECT_EQ(asked()[0],
              "Same CD ID: Another disc is catalogued under ID = 116. Its titles are shown for "
              "this disc.");
    EXPECT_EQ(column("Title"), (std::vector<std::string>{"Other 1", "Other 2"}));
    EXPECT_EQ(app->station.CD_Mode, 1);
}

TEST_F(CdPlayer, TheViewButtonKeepsTheSeventhPlayersStateAndGivesItBack) {
    app->playback.Cmd7th_Click();
    ASSERT_EQ(app->station.Ply7_On, 1);
    app->viewer.click("CDButt");
    EXPECT_EQ(app->viewer.CDButt.Caption, "Hide CD");
    EXPECT_EQ(app->viewer.CDButt.BackColor, 0x80FF80);
    EXPECT_TRUE(app->cd_player.Visible);
    EXPECT_EQ(app->cd_player.Height, 1400);
    EXPECT_EQ(app->station.Ply7_On, 0);
    EXPECT_EQ(app->cd_player.Ply7_Was, 1);
    EXPECT_EQ(app->viewer.Cmd7th.Caption, "Ply7 Off");
    EXPECT_FALSE(app->viewer.CmdSc.Visible);
    EXPECT_TRUE(app->station.CD_On);

    app->qx_main.click("CD_PLYR");
    EXPECT_EQ(app->viewer.CDButt.Caption, "View CD");
    EXPECT_EQ(app->viewer.CDButt.BackColor, 0xFF8080);
    EXPECT_FALSE(app->cd_player.Visible);
    EXPECT_EQ(app->station.Ply7_On, 1);
    EXPECT_EQ(app->viewer.Cmd7th.Caption, "Ply7 On");
    EXPECT_FALSE(app->station.CD_On);
}

TEST_F(CdPlayer, ABreakOrderWithTheCdOpensTheView) {
    Station& s = app->station;
    s.Brk_CD = true;
    s.Live_Mode = 1;
    s.SM_State = 1;
    s.Break_Start = 0;
    s.Break_End = 0.99;
    s.Break_Date = DateValueOf(kMonday);
    app->playback.TimerViewer_Timer();
    EXPECT_TRUE(app->cd_player.Visible);
    EXPECT_EQ(app->viewer.CDButt.Caption, "Hide CD");
    EXPECT_EQ(s.Live_Mode, 2);
}

TEST_F(CdPlayer, ADataDiscIsReadAsOneTrackAndNeitherCataloguedNorCued) {
    std::filesystem::create_directories(fake.home() / "data");
    std::ofstream(fake.home() / "data" / "setup.exe") << "MZ";
    EXPECT_TRUE(app->insert_cd(fake.home() / "data").empty());
    app->cd_player.CDButt_Click();
    seconds(3);
    Form1& cd = app->cd_player;
    EXPECT_TRUE(asked().empty());
    EXPECT_EQ(cd.CD_Tracks, 1);
    EXPECT_FALSE(cd.CD_Loaded);
    EXPECT_TRUE(cd.eject.Enabled);
    EXPECT_FALSE(cd.play.Enabled);
    EXPECT_EQ(app->station.CD_Mode, 0);
    EXPECT_TRUE(column("Format").empty());
}

TEST_F(CdPlayer, NoDriveAndNoDiscAreToldAndTheStationGoesOn) {
    // The machine's drive, which this one doesn't have.
    std::ofstream(fake.home() / "tavora.ini") << "CD Device=/nonexistent/cdrom\r\n";
    app = std::make_unique<StationApp>(fake.services);
    ASSERT_TRUE(app->Sub_Main());
    app->cd_player.CDButt_Click();
    seconds(1);
    ASSERT_GE(asked().size(), 2u);
    EXPECT_EQ(asked()[asked().size() - 2],
              ": There is no CD drive on this machine, or it cannot be opened.");
    EXPECT_EQ(asked().back(),
              ": The CD is in use, Please unload the program causing the problem and re-start "
              "the Tavora");
    EXPECT_FALSE(app->cd_player.play.Enabled);
    EXPECT_TRUE(app->cd_player.CmdHide.Enabled);
    app->Shutdown();
    EXPECT_FALSE(app->cd_player.Loaded);
}

}  // namespace
}  // namespace tavora
