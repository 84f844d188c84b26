#include "catalogue_fixture.h"
#include "offline_station.h"
#include "platform/file_ops.h"
#include "players/engine_player.h"

namespace tavora {
namespace {

using Editor = CatalogueTest;

TEST_F(Editor, ClearCommandsChainEachCounterToTheNextShorter) {
    const auto counters = {std::pair<const char*, Value>{"RTW", 3},
                           {"Request This Month", 8},
                           {"Request AllTime", 20},
                           {"Total Request", 5},
                           {"Week1 Requests", 2},
                           {"Week2 Requests", 4},
                           {"Week3 Requests", 6}};
    const long long a = add_row("A", "c:\\a.mp3");
    set_fields(a, counters);
    // Monthly alone: the month takes the week as it stands.
    answer({Answer::Yes, Answer::No, Answer::Yes, Answer::No, Answer::No});
    db->Command8_Click(0);
    EXPECT_EQ(
        fields_of(a, {"Request This Month", "Week2 Requests", "Week3 Requests", "Request AllTime"}),
        "3|2|0|20");
    EXPECT_EQ(texts().back(), "Completed!");

    // Every counter: each takes a zero down the chain.
    set_fields(a, counters);
    answer({Answer::Yes, Answer::Yes, Answer::Yes, Answer::Yes, Answer::Yes});
    db->Command8_Click(0);
    EXPECT_EQ(fields_of(a, {"RTW", "Request This Month", "Request AllTime", "Total Request",
                            "Week1 Requests", "Week2 Requests"}),
              "0|0|0|0|0|0");
}

TEST_F(Editor, OpenRequestsClearOrLimitButPlaylistMarksStay) {
    const long long three = add_row("Three", "c:\\3.mp3");
    const long long member = add_row("Member", "c:\\m.mp3");
    set_fields(three, {{"Sel", 3}});
    set_fields(member, {{"Sel", 1000}});
    fake.dialogs.Queue(Answer::Yes);
    db->click("Command8", 2);
    EXPECT_EQ(field(three, "Sel").number(), 1);
    fake.dialogs.Queue(Answer::Yes);
    db->click("Command8", 1);
    EXPECT_EQ(field(three, "Sel").number(), 0);
    EXPECT_EQ(field(member, "Sel").number(), 1000);
}

TEST_F(Editor, CloneAndPasteCarryTheSettingsToAnotherRecord) {
    const long long master = add_row("Master", "c:\\a.mp3");
    const long long other = add_row("Other", "c:\\b.mp3");
    set_fields(master, {{"Category", "Jazz"}, {"Max Play Week", 11}, {"Valid Monday", -1}});
    go_to(master);
    db->click("CommandClone");
    EXPECT_EQ(db->CommandClone.Caption, "Master Record");
    EXPECT_FALSE(db->Command2.Visible);
    db->click("cmdNext");
    EXPECT_TRUE(db->Command2.Visible);
    db->click("Command2");
    EXPECT_EQ(fields_of(other, {"Category", "Max Play Week", "Valid Monday", "Title"}),
              "Jazz|11|True|Other");
    db->click("CmdFindClone");
    EXPECT_EQ(db->Data1.Recordset().Fields("RecID").number(), master);
}

TEST_F(Editor, ConversionsWriteTheKindAndIntrosLeaveTheRotation) {
    for (const auto& [button, source, lit, intro] : {
             std::tuple{"CmdDaily", "Timed Promo", "CmdDaily", false},
             {"CmdSnipit", "Snipit", "CmdSnipit", false},
             {"CmdTop40", "Top40", "CmdDaily", true},
             {"CmdTopCountry", "TopAC", "CmdTopCountry", true},
             {"CmdTopDance", "TopDance", "CmdTopDance", true},
             {"CmdTopRequest", "TopRequest", "CmdDaily", true},
         }) {
        const long long id = add_row(button, "c:\\x.mp3");
        set_fields(id, {{"T40", 4}, {"C40", 2}, {"Valid Friday", -1}});
        go_to(id);
        fake.dialogs.Queue(Answer::No);
        db->click(button);
        EXPECT_TRUE(field(id, "Source").is_null()) << button;
        EXPECT_EQ(fake.dialogs.shown().back().request.default_button, 2);
        fake.dialogs.Queue(Answer::Yes);
        db->click(button);
        EXPECT_EQ(fields_of(id, {"Source", "T40", "Valid Friday"}),
                  source + std::string(intro ? "|0|False" : "|4|True"));
        EXPECT_EQ(db->find(lit)->BackColor, AdWiz::kLit) << button;
    }
    db->click("CmdNormal");
    EXPECT_TRUE(db->Data1.Recordset().Fields("Source").is_null());
}

TEST_F(Editor, ChartHelperStepsAndWritesThePosition) {
    const long long id = add_row("Song", "c:\\s.mp3");
    go_to(id);
    db->click("CmdCht", 3);
    EXPECT_EQ(db->Cht_Pos, 0);
    db->click("CmdCht", 3);
    EXPECT_EQ(db->Cht_Pos, 0);
    EXPECT_EQ(db->Label6.Caption, "0");
    set_fields(id, {{"T40", 9}});
    db->click("CmdCht", 4);  // a position of 0 clears the chart
    EXPECT_EQ(field(id, "T40").number(), 0);
    EXPECT_EQ(db->Label7.Caption, "Top 40 Set");
    db->click("CmdCht", 2);
    db->click("CmdCht", 2);
    db->click("CmdCht", 6);
    EXPECT_EQ(field(id, "D40").number(), 2);
    EXPECT_EQ(db->Cht_Pos, 2);

    station.Auto_PL = 0;
    db->click("CmdCht", 0);
    EXPECT_TRUE(fake.dialogs.shown().empty());
    EXPECT_EQ(db->Label7.Caption, "Ready");
    station.Auto_PL = 1;
    db->click("CmdCht", 0);
    EXPECT_EQ(station.Auto_PL, 0);
    EXPECT_FALSE(db->CmdCht0.Visible);
}

TEST_F(Editor, ClearChartsKeepsIntroNumbersAndShowsTheTwoXLine) {
    const long long song = add_row("Song", "c:\\s.mp3");
    const long long intro = add_row("Intro", "c:\\i.mp3");
    set_fields(song, {{"T40", 3}, {"C40", 5}});
    set_fields(intro, {{"T40", 3}, {"Source", "Top40"}});
    station.Power_On = 1;
    go_to(song);
    EXPECT_EQ(db->LabelSpecial.Caption, "2X Play Is Active");
    fake.dialogs.Queue(Answer::Yes);
    db->click("ClrAll", 0);
    EXPECT_EQ(fields_of(song, {"T40", "C40"}), "0|5");
    EXPECT_EQ(field(intro, "T40").number(), 3);
    EXPECT_EQ(fake.dialogs.shown().back().request.title, "Clear Charts");
}

TEST_F(Editor, DeleteRemovesTheFileOnlyOnAnExplicitNo) {
    const auto kept = place("short.mp3", "music/kept.mp3");
    const auto dropped = place("short.mp3", "music/dropped.mp3");
    const long long keep_id = add_row("Kept", dos(kept));
    const long long drop_id = add_row("Dropped", dos(dropped));
    add_row("Third", "c:\\t.mp3");
    go_to(keep_id);
    answer({Answer::Yes, Answer::Yes});
    db->click("cmdDelete");
    go_to(drop_id);
    answer({Answer::Yes, Answer::No});
    db->click("cmdDelete");
    EXPECT_EQ(count(), 1);
    EXPECT_TRUE(files::Exists(kept));
    EXPECT_FALSE(files::Exists(dropped));
    db->Data1.Refresh();
    db->click("cmdDelete");  // the last record stays, and nothing is asked
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(fake.dialogs.pending(), 0u);
}

TEST_F(Editor, PresetsAndRandomFlag) {
    const long long id = add_row("List", "QXPL");
    go_to(id);
    EXPECT_TRUE(db->find("BtnRand")->Visible);
    db->click("CmpPst", 1);
    EXPECT_EQ(field(id, "Max Play Week").number(), 7);
    db->click("CmpPst", 6);  // saves 2/7/30
    db->click("CmpPst", 4);
    EXPECT_EQ(field(id, "Max Month").number(), 5);
    db->click("CmpPst", 5);
    EXPECT_EQ(field(id, "Max Month").number(), 30);
    db->click("BtnRand");
    EXPECT_EQ(field(id, "Long title").text(), "QXPLRand");
    db->click("BtnRand");
    EXPECT_EQ(field(id, "Long title").text(), "QXPL");
}

class CueEditor : public CatalogueTest {
  protected:
    void SetUp() override {
        CatalogueTest::SetUp();
        db->attach_preview(engine_player(engine.engine(), engine.post()));
    }

    // A record of a generated tone, on the Preview tab with its file open.
    long long open_tone(const std::string& clip) {
        const long long id = add_row("Tone", dos(place(clip, "music/" + clip)));
        set_fields(id, {{"End Pos", -1}, {"Start Pos", 0}});
        go_to(id);
        db->show_tab(4);
        engine.run_events();
        return id;
    }
    double field(const char* name) { return db->Data1.Recordset().Fields(name).number(); }
    MediaPlayer& preview() { return *db->ActiveMoviePreview; }

    audio::test::OfflineStation engine;
};

TEST_F(CueEditor, MarksAreFileTimesAndMixOutCountsFromTheEnd) {
    open_tone("tone30.wav");
    EXPECT_TRUE(db->APTimer_Enabled());
    // The opened file fills a missing end.
    EXPECT_NEAR(field("End Pos"), 30.0, 0.01);

    preview().CurrentPosition(10.0);
    db->click("SetStart");
    EXPECT_NEAR(field("Start Pos"), 10.0, 0.01);
    EXPECT_NEAR(field("Size"), 13.0, 0.01);

    preview().CurrentPosition(25.0);
    db->click("SetMixOut");
    EXPECT_NEAR(field("Mix Out"), 5.0, 0.01);

    db->click("TestMixOut");
    engine.render(audio::kRate);
    EXPECT_EQ(preview().PlayState(), MediaPlayer::kPlaying);
    EXPECT_NEAR(preview().CurrentPosition(), 26.0, 0.05);
}

TEST_F(CueEditor, RateChangesPlayButNotTheMarks) {
    open_tone("tone30.wav");
    db->set("Slider1", -1, "10");
    EXPECT_EQ(db->frmPlaybackRate.Caption, "1.5");
    EXPECT_DOUBLE_EQ(preview().Rate(), 1.5);
    db->click("TestStart");
    engine.render(2 * audio::kRate);
    db->click("SetMixIn");
    EXPECT_NEAR(field("Size"), 3.0, 0.1);  // two seconds heard, three of the file
}

TEST_F(CueEditor, TestEndHearsTheLastTwentySecondsOfALongFileOnly) {
    open_tone("tone15.wav");
    preview().CurrentPosition(7.0);
    db->click("TestEnd");
    EXPECT_NEAR(preview().CurrentPosition(), 7.0, 0.01);
    EXPECT_EQ(preview().PlayState(), MediaPlayer::kPlaying);

    db->show_tab(0);
    EXPECT_FALSE(db->APTimer_Enabled());
    open_tone("tone30.wav");
    db->click("TestEnd");
    EXPECT_NEAR(preview().CurrentPosition(), 10.0, 0.01);
}

TEST_F(CueEditor, PreviewFadesFollowTheMarks) {
    const long long id = open_tone("tone30.wav");
    Recordset& row = db->Data1.Recordset();
    ASSERT_EQ(row.Fields("RecID").number(), id);
    row.Edit();
    row.SetField("FadeOut", Value::boolean(true));
    row.SetField("Mix Out", Value(5));
    row.Update();
    preview().CurrentPosition(26.0);
    preview().play();
    fake.loop.run_for(300);
    // A straight line to -2000 over the mix-out: -2000 / 15 a tick.
    EXPECT_EQ(db->txtFields(33).Text, "-134");

    // A mix-out of 0 never starts the fade.
    row.Edit();
    row.SetField("Mix Out", Value(0));
    row.Update();
    preview().Volume(-1);
    fake.loop.run_for(300);
    EXPECT_EQ(db->txtFields(33).Text, "-1");
}

// A file that fails to open leaves the preview stopped, free for the next row.
TEST_F(CueEditor, AFileThatFailsToOpenDoesNotHoldUpTheNextRow) {
    const long long gone = add_row("Gone", dos(home() / "music" / "gone.wav"));
    const long long tone = add_row("Tone", dos(place("tone15.wav", "music/tone15.wav")));
    go_to(gone);
    db->show_tab(4);
    engine.run_events();
    EXPECT_EQ(preview().PlayState(), MediaPlayer::kStopped);
    go_to(tone);
    engine.run_events();
    EXPECT_NEAR(preview().Duration(), 15.0, 0.01);
}

TEST_F(CueEditor, CdAndPlaylistRowsCannotBeEdited) {
    add_row("Track", "CD12");
    db->Data1.Refresh();
    db->show_tab(4);
    EXPECT_EQ(fake.dialogs.shown().back().request.title, "Edit On CD Not Allowed");
    EXPECT_EQ(db->tab(), 2);
    EXPECT_FALSE(db->APTimer_Enabled());
}

}  // namespace
}  // namespace tavora
