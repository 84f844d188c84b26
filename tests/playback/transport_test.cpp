#include <gtest/gtest.h>

#include "bank_fixture.h"
#include "runtime/strings.h"

namespace tavora::test {
namespace {

constexpr double kTick = 0.3;

using Transport = BankTest;

// Each run's step is worked out anew from the level and the seconds left, so
// the steps shrink as the level falls: a mix-out of 10 ends the song after
// about nineteen runs, some five and a half seconds, well before its end.
TEST_F(Transport, AFadeOutRecordStopsEarlyUnderTheNextSong) {
    selection.songs[0].fade_out = true;
    start_set();
    station.Slot_MixOut[1] = 10;
    station.Slot_MixOut[2] = 10;  // the fade reads the active slot's mix-out
    ASSERT_TRUE(wait_until([&] { return !air.starts(2).empty(); }, 200));
    const double handed_over = air.starts(2)[0];
    ASSERT_TRUE(wait_until([&] { return !plays(1); }, 15));
    const double stopped = now();
    EXPECT_GT(stopped - handed_over, 4.5);
    EXPECT_LT(stopped - handed_over, 6.3);
    EXPECT_EQ(station.Slot_Started[1], 1);
    EXPECT_LT(stopped, air.starts(1)[0] + station.Slot_End[1] - 3.5)
        << "stopped well before the song's end";
}

TEST_F(Transport, ASkipThreeSecondsInHandsOverSevenSecondsLaterAndClosingAWindowSkipsAtOnce) {
    start_set();
    wait(3 - 0.1);
    fake.dialogs.Queue(Answer::Yes);
    viewer.click("Command7");
    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(asked().text, "Are You Sure you want to SKIP this song?");
    const double position = playback->Players(1).CurrentPosition();
    EXPECT_NEAR(position, 3, 0.35);
    EXPECT_DOUBLE_EQ(station.Slot_MixOut[1], position);
    EXPECT_DOUBLE_EQ(station.Slot_End[1], position + 10);
    EXPECT_TRUE(station.Slot_FadeOut[1]);
    EXPECT_EQ(Left(viewer.Label1(14).Caption, 7), "Skipped");

    const double skipped = now();
    ASSERT_TRUE(wait_until([&] { return !air.starts(2).empty(); }, 10));
    EXPECT_NEAR(air.starts(2)[0] - skipped, 10 - position, kTick);

    // Closing a player's window skips too, without a question.
    wait(20);
    playback->Player_QueryUnload(2);
    EXPECT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(playback->Ply_Closing, 0);
    wait(kTick);
    EXPECT_TRUE(plays(3)) << "twenty seconds played: the hand-over fires at once";
}

TEST_F(Transport, BreakHoldsTheNextSlotMutedAtItsStartUntilResume) {
    start_set();
    ASSERT_TRUE(wait_until([&] { return station.Ply_Now == 3; }, 400));
    playback->Break_Click();
    EXPECT_EQ(break_button.Caption, "Resume");
    EXPECT_EQ(playback->Pause_At, 4);

    ASSERT_TRUE(wait_until([&] { return station.Ply_Now == 4; }, 250));
    EXPECT_TRUE(plays(4));
    EXPECT_TRUE(playback->Players(4).Mute()) << "not heard before the pause";
    wait(kTick);
    MediaPlayer& held = playback->Players(4);
    EXPECT_EQ(held.PlayState(), MediaPlayer::kPaused);
    EXPECT_FALSE(held.Mute());
    EXPECT_DOUBLE_EQ(held.CurrentPosition(), station.Slot_Start[4]);
    EXPECT_FALSE(playback->TimerViewer().Enabled());
    wait(60);
    EXPECT_EQ(held.PlayState(), MediaPlayer::kPaused) << "held while the presenter talks";

    playback->Break_Click();
    EXPECT_EQ(break_button.Caption, "Break");
    EXPECT_EQ(playback->Pause_At, 0);
    EXPECT_TRUE(plays(4));
    EXPECT_TRUE(playback->TimerViewer().Enabled());
    wait(1);
    EXPECT_EQ(station.Slot_Ready[4], 3);
}

TEST_F(Transport, BreakIsRefusedInTheSixthSlotAndSkipIsRefusedWhileOneIsPending) {
    start_set();
    station.Ply_Now = 6;
    playback->Break_Click();
    EXPECT_EQ(asked().text, "Sorry, Not Yet");
    EXPECT_EQ(break_button.Caption, "Break");

    station.Ply_Now = 1;
    playback->Break_Click();
    playback->Skip_One();
    EXPECT_EQ(asked().text, "You Can't Skip During An Active (Break) Routine");
}

TEST_F(Transport, StallRecoveryStartsTheNextSlotWhenTheBankFallsSilent) {
    start_set();
    wait(5);
    playback->Players(1).Stop();  // the player died
    wait(2 * kTick);
    EXPECT_TRUE(plays(2));
    EXPECT_EQ(station.Ply_Now, 2);
    EXPECT_EQ(station.Cue_Slot, 8);
    EXPECT_EQ(station.Load_Due, 1);
}

TEST_F(Transport, PauseMenuHoldsTheWholeBankAndPlaysAgain) {
    start_set();
    viewer.Visible = false;
    playback->Ply_Pse();
    EXPECT_TRUE(fake.dialogs.shown().empty()) << "the viewer is hidden";
    viewer.Visible = true;
    fake.dialogs.Queue(Answer::OK);
    playback->Ply_Pse();
    EXPECT_EQ(asked().title, "I Hate It When The Music Stops WARNING");
    EXPECT_FALSE(playback->TimerViewer().Enabled());
    EXPECT_EQ(playback->Players(1).PlayState(), MediaPlayer::kPaused);
    wait(300);
    EXPECT_TRUE(air.starts(2).empty());
    playback->Ply_Pse();
    EXPECT_TRUE(plays(1));
    EXPECT_TRUE(playback->TimerViewer().Enabled());
}

TEST_F(Transport, FaderWritesTheStatusLineWithItsWalkingArrow) {
    start_set();
    ASSERT_TRUE(wait_until(
        [&] { return viewer.Label1(14).Caption.find("(T)0:01:04") != std::string::npos; }, 70));
    const std::string line = viewer.Label1(14).Caption;
    EXPECT_EQ(line, "QX1>   Playing   (T)0:01:04   (E)0:02:30   (R)0:01:26 >  ") << line;
    EXPECT_DOUBLE_EQ(viewer.ProgressBar1[1].Value, 64);
}

}  // namespace
}  // namespace tavora::test
