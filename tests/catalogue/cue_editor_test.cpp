#include "catalogue_fixture.h"
#include "offline_station.h"
#include "players/engine_player.h"

namespace tavora {
namespace {

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
    void play_for(double seconds) {
        engine.render(static_cast<std::size_t>(seconds * audio::kRate));
    }

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
    play_for(1.0);
    EXPECT_EQ(preview().PlayState(), MediaPlayer::kPlaying);
    EXPECT_NEAR(preview().CurrentPosition(), 26.0, 0.05);
}

TEST_F(CueEditor, RateChangesPlayButNotTheMarks) {
    open_tone("tone30.wav");
    db->set("Slider1", -1, "10");
    EXPECT_EQ(db->frmPlaybackRate.Caption, "1.5");
    EXPECT_DOUBLE_EQ(preview().Rate(), 1.5);
    db->click("TestStart");
    play_for(2.0);
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
