#include <gmock/gmock.h>

#include "bank_fixture.h"

namespace tavora::test {
namespace {

using ::testing::HasSubstr;
using CueLoading = BankTest;

TEST_F(CueLoading, RunCuesTheWholeFirstSetBeforeTheFirstSongPlays) {
    run();
    EXPECT_EQ(selection.schedule_checks, 1);
    EXPECT_EQ(air.commits, (std::vector<int>{1, 2, 3, 4, 5, 6}));
    for (int slot = 1; slot <= 6; ++slot)
        EXPECT_EQ(station.Slot_MixOut[slot], 1) << slot;  // the first set mixes at one second
    EXPECT_EQ(loding.Line(1).Caption, "QX1 - song150.mp3");
    EXPECT_EQ(station.Load_Busy, 1);

    // One player opened a tick, then six ticks to settle, then play.
    ASSERT_TRUE(wait_until([&] { return !air.starts(1).empty(); }, 10));
    EXPECT_NEAR(air.starts(1)[0], 11 * 0.3, 0.01);
    EXPECT_EQ(station.Load_Busy, 0);
    for (int slot = 2; slot <= 6; ++slot) {
        EXPECT_EQ(station.Slot_Ready[slot], 2) << slot;
        EXPECT_EQ(playback->Players(slot).PlayState(), MediaPlayer::kPaused) << "primed";
        EXPECT_EQ(playback->Players(slot).Volume(), 0) << "its own level after priming";
    }
    wait(0.1);
    EXPECT_EQ(station.Slot_Ready[1], 3);
    EXPECT_EQ(viewer.Caption, "Next: song165.mp3");
    EXPECT_EQ(viewer.Label1(2).Caption, "QX2 song165.mp3");
    EXPECT_EQ(viewer.Label1(15).Caption, "Cue Ready");
}

TEST_F(CueLoading, AMissingFileIsLoggedAndReplaced) {
    selection.songs.insert(selection.songs.begin(), Song{"gone.mp3"});
    run();
    EXPECT_EQ(station.Slot_File[1], "d:\\song225.mp3") << "the next pick";
    EXPECT_EQ(main.Panel(7).Text, "1");
    EXPECT_THAT(log_text(),
                HasSubstr("ERROR FILE NOT FOUND >> 10:00:00 AM  d:\\gone.mp3 gone.mp3"));
    ASSERT_TRUE(wait_until([&] { return !air.starts(1).empty(); }, 10));
}

TEST_F(CueLoading, DurationFixWritesTheLengthThePlayerFound) {
    selection.songs[0].end = 999;  // beyond the file
    start_set();
    EXPECT_NEAR(station.Slot_End[1], 150, 0.1);
    EXPECT_NEAR(playback->Players(1).SelectionEnd(), 150, 0.1);

    auto library = Library::open(fake.home() / "qx1.mdb", FileKind::Library).library;
    Recordset rows;
    ASSERT_TRUE(rows.Open(library, "SELECT * FROM Recordings1 WHERE RecID = 1"));
    EXPECT_NEAR(rows.Fields("Length").number() * 86400, 150, 1e-6);
}

TEST_F(CueLoading, ARemovedCueIsRefilledByTheNextLoadUp) {
    run();
    // Load_Up runs fifteen seconds into the second song and fills 7 and 8.
    ASSERT_TRUE(wait_until([&] { return station.Slot_Ready[8] == 1; }, 200));
    EXPECT_EQ(station.Slot_Ready[9], 0);
    EXPECT_TRUE(viewer.ClrCue(2).Visible);
    const std::string removed = station.Slot_Title[8];

    fake.dialogs.Queue(Answer::Yes);
    viewer.click("ClrCue", 2);
    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(asked().text, "Are you sure you want to remove " + removed + "?");
    EXPECT_EQ(station.Slot_Ready[8], 0);
    EXPECT_EQ(station.Slot_File[8], "");
    EXPECT_EQ(viewer.Label1(8).Caption, "");
    EXPECT_FALSE(viewer.ClrCue(2).Visible);
    EXPECT_TRUE(playback->TimerViewer().Enabled());

    // The third song's Load_Up fills the rest of the set, slot 8 with it.
    ASSERT_TRUE(wait_until([&] { return station.Slot_Ready[12] == 1; }, 400));
    EXPECT_EQ(station.Slot_Ready[8], 1);
    EXPECT_NE(station.Slot_File[8], "");
    EXPECT_NE(station.Slot_Title[8], removed);
}

TEST_F(CueLoading, ASongTooShortForSelectionLeavesTheLoadToTheNextOne) {
    selection.songs = {{"song150.mp3"}, {"spot20.mp3"}};
    run();
    ASSERT_TRUE(wait_until([&] { return !air.starts(2).empty(); }, 200));
    wait(1);
    EXPECT_EQ(playback->Load_Late, 1);
    EXPECT_EQ(station.Load_Due, 1);
    wait(10);
    EXPECT_EQ(station.Load_Due, 1) << "the spot gives no room for selection";
    EXPECT_EQ(station.Ply_Now, 2);
}

}  // namespace
}  // namespace tavora::test
