// Form1 on a whole station: disc images written here, a real library file,
// the probe players on virtual time, and the dialogs answered by script.
#include "disc_images.h"
#include "station_fixture.h"

namespace tavora {
namespace {

class CdPlayer : public StationTest {
  protected:
    void SetUp() override {
        StationTest::SetUp();
        ASSERT_TRUE(start());
        disc = make_disc(home() / "disc", kThreeTracks);
    }

    // Opens the view with the disc in the drive and lets Timer1 read it.
    void open_with_disc() {
        EXPECT_TRUE(app->insert_cd(disc).empty());
        app->cd_player.CDButt_Click();
        seconds(1.5);
    }
    void switch_off_track_2() {
        ASSERT_TRUE(app->cd_player.set("DBGrid1", -1, "2  Track 2 - CD116  On"));
        ASSERT_TRUE(app->cd_player.set("TrackOn", -1, "0"));
    }
    // The view's key, whether a disc is loaded, the play and eject buttons
    // and how the disc is cued.
    std::string view() const {
        const Form1& cd = app->cd_player;
        return "'" + cd.Label1.Caption + "' loaded " + std::to_string(cd.CD_Loaded) + " play " +
               std::to_string(cd.play.Enabled) + " eject " + std::to_string(cd.eject.Enabled) +
               " mode " + std::to_string(app->station.CD_Mode);
    }

    std::filesystem::path disc;
};

TEST_F(CdPlayer, ANewDiscIsCataloguedWithTypedTitlesUntilTheSkip) {
    for (const char* text : {"Blue Album", "Song One", "Singer", ""})
        fake.dialogs.QueueText(text);
    fake.dialogs.Queue(Answer::No);  // keep asking after the empty title
    fake.dialogs.QueueText("Other Singer");
    fake.dialogs.QueueText("");
    fake.dialogs.Queue(Answer::Yes);  // skip the rest
    open_with_disc();
    EXPECT_EQ(fake.dialogs.pending(), 0u);
    const std::string skip = "Skip Entry?: Do You Want To Skip entering The rest of the info?";
    EXPECT_EQ(asked(),
              (std::vector<std::string>{
                  "Enter Title: Enter Title For This CD", "Enter Title: Enter Title For Track#1",
                  "Enter Artist: Enter Artist For Track#1", "Enter Title: Enter Title For Track#2",
                  skip, "Enter Artist: Enter Artist For Track#2",
                  "Enter Title: Enter Title For Track#3", skip}));
    EXPECT_EQ(rows("CDNow",
                   {"Title", "Artist", "Long title", "Disc Title", "CD Track", "CD On", "Length"}),
              (std::vector<std::string>{
                  "Song One|Singer|CD116 1|CD Media - Blue Album|1|On|12:01:10 AM",
                  "Track 2|Other Singer|CD116 2|CD Media - Blue Album|2|On|12:00:50 AM",
                  "Track 3|CD116|CD116 3|CD Media - Blue Album|3|On|12:02:00 AM",
              }));
    EXPECT_EQ(rows("CDNow", {"Format", "Mix Out", "Max Play Day", "Max Play Week", "Max Month",
                             "Min Time Between Plays"}),
              std::vector<std::string>(3, "CD116|9|12|80|320|1:00:00 AM"));
    // The station was idle: typing the titles doesn't start the transport.
    EXPECT_FALSE(app->playback.TimerViewer().Enabled());
}

// The disc key comes from its times. A new disc is catalogued, not cued; a
// known one comes back with its rows, no questions, and cued.
TEST_F(CdPlayer, AKnownDiscComesBackWithItsRowsAndNoQuestions) {
    open_with_disc();
    EXPECT_EQ(view(), "'ID = 116' loaded 1 play 1 eject 1 mode 0");
    EXPECT_EQ(app->station.CD_Id, "CD116");
    EXPECT_EQ(app->cd_player.Label2.Caption, "Tracks: 3  Total time: 04:00:24");
    EXPECT_EQ(app->cd_player.CD_TrackLen[2], "00:50:00");
    const std::size_t first_questions = asked().size();
    app->eject_cd();
    seconds(1);
    EXPECT_EQ(view(), "'' loaded 0 play 0 eject 0 mode 0");
    EXPECT_TRUE(app->cd_player.cmdClose.Enabled);

    app->insert_cd(disc);
    seconds(1);
    EXPECT_EQ(asked().size(), first_questions);
    EXPECT_EQ(view(), "'ID = 116' loaded 1 play 1 eject 1 mode 1");
    ASSERT_EQ(app->cd_player.DBGrid1.List.size(), 3u);
    EXPECT_EQ(app->cd_player.DBGrid1.List[1], "2  Track 2 - CD116  On");
    EXPECT_EQ(rows("CDNow", {"Format"}).size(), 3u);
}

TEST_F(CdPlayer, ATrackSwitchedOffIsSkipped) {
    open_with_disc();
    switch_off_track_2();
    EXPECT_EQ(rows("CDNow", {"CD on"}), (std::vector<std::string>{"On", "Off", "On"}));
    Form1& cd = app->cd_player;
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
    switch_off_track_2();
    Fields scheduled{{"Schedule Select", Value(1)}, {"Last Played", Value::date(kMonday - 2)}};
    for (const char* day :
         {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"})
        scheduled.emplace_back(std::string("Valid ") + day, Value::boolean(true));
    edit_rows("qx1.mdb", "CDNow", scheduled);
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
        tracks.push_back(app->cd_player.CD_SeekTo);
        seconds(5);
    }
    using Way = PickReport::Way;
    EXPECT_EQ(ways, (std::vector<Way>{Way::Rules, Way::Rules, Way::CdFallback, Way::CdFallback}));
    // Tracks 1 and 3 in either order, then again in the same order.
    EXPECT_TRUE(tracks == (std::vector<int>{1, 3, 1, 3}) ||
                tracks == (std::vector<int>{3, 1, 3, 1}))
        << testing::PrintToString(tracks);
}

TEST_F(CdPlayer, ADiscWhoseKeyAnotherDiscHoldsIsSaidAndNothingIsWritten) {
    for (const char* t : {"1", "2"}) {
        add_row("Recordings1", {{"Title", Value(std::string("Other ") + t)},
                                {"Long title", Value(std::string("CD116 ") + t)},
                                {"Format", Value("CD116")}});
    }
    open_with_disc();
    EXPECT_EQ(asked(), std::vector<std::string>{"Same CD ID: Another disc is catalogued under ID = "
                                                "116. Its titles are shown for this disc."});
    EXPECT_EQ(rows("CDNow", {"Title"}), (std::vector<std::string>{"Other 1", "Other 2"}));
    EXPECT_EQ(app->station.CD_Mode, 1);
}

TEST_F(CdPlayer, TheViewButtonKeepsTheSeventhPlayersStateAndGivesItBack) {
    app->playback.Cmd7th_Click();
    ASSERT_EQ(app->station.Ply7_On, 1);
    // The view button and its colour (0x80FF80 green, 0xFF8080 blue), the
    // view, the seventh player and the CD's flag.
    const auto state = [this] {
        const auto& v = app->viewer;
        return v.CDButt.Caption + " " + std::to_string(v.CDButt.BackColor) + " " +
               std::to_string(app->cd_player.Visible) + " " + v.Cmd7th.Caption + " " +
               std::to_string(app->station.Ply7_On) + " " + std::to_string(app->station.CD_On);
    };
    app->viewer.click("CDButt");
    EXPECT_EQ(state(), "Hide CD 8454016 1 Ply7 Off 0 1");
    EXPECT_EQ(app->cd_player.Height, 1400);
    EXPECT_EQ(app->cd_player.Ply7_Was, 1);
    EXPECT_FALSE(app->viewer.CmdSc.Visible);
    app->qx_main.click("CD_PLYR");
    EXPECT_EQ(state(), "View CD 16744576 0 Ply7 On 1 0");
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
    fake.folder.Write("data/setup.exe", "MZ");
    EXPECT_TRUE(app->insert_cd(home() / "data").empty());
    app->cd_player.CDButt_Click();
    seconds(3);
    EXPECT_TRUE(asked().empty());
    EXPECT_EQ(app->cd_player.CD_Tracks, 1);
    EXPECT_EQ(view(), "'' loaded 0 play 0 eject 1 mode 0");
    EXPECT_TRUE(rows("CDNow", {"Format"}).empty());
}

TEST_F(CdPlayer, NoDriveAndNoDiscAreToldAndTheStationGoesOn) {
    // The machine's drive, which this one doesn't have.
    std::ofstream(home() / "tavora.ini") << "CD Device=/nonexistent/cdrom\r\n";
    ASSERT_TRUE(start());
    app->cd_player.CDButt_Click();
    seconds(1);
    const std::vector<std::string> said = asked();
    ASSERT_GE(said.size(), 2u);
    EXPECT_EQ(std::vector<std::string>(said.end() - 2, said.end()),
              (std::vector<std::string>{
                  ": There is no CD drive on this machine, or it cannot be opened.",
                  ": The CD is in use, Please unload the program causing the problem and "
                  "re-start the Tavora"}));
    EXPECT_FALSE(app->cd_player.play.Enabled);
    EXPECT_TRUE(app->cd_player.CmdHide.Enabled);
    app->Shutdown();
    EXPECT_FALSE(app->cd_player.Loaded);
}

}  // namespace
}  // namespace tavora
