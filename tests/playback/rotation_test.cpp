#include <gmock/gmock.h>

#include "bank_fixture.h"

namespace tavora::test {
namespace {

using ::testing::_;
using ::testing::ElementsAre;

// Cues of the next set as they stand before the sixth song ends.
const Song kSong{.file = "song150.mp3"};
const Song kSpot{.file = "spot20.mp3", .mix_out = 9, .special = 1};
const Song kShortSpot{.file = "spot10.wav", .mix_out = 9, .special = 1};

class Rotation : public BankTest {
  protected:
    void SetUp() override {
        BankTest::SetUp();
        make_probe();
        station.Ply_Now = 6;
        viewer.Visible = true;
    }
    // Cues the next set and ticks once with the sixth slot done: the set rotates.
    void rotate(const std::vector<Song>& songs) {
        for (int i = 0; i < 6; ++i)
            put(station, 7 + i, songs[static_cast<std::size_t>(i)], i + 1);
        station.Slot_Started[6] = 1;
        playback->TimerViewer_Timer();
    }
    std::vector<double> mix_outs() const {
        return {station.Slot_MixOut.begin() + 1, station.Slot_MixOut.begin() + 7};
    }
};

TEST_F(Rotation, SpotsMixAtOnceIntoSpotsAndTheSixthKeepsItsOwn) {
    rotate({kSpot, kShortSpot, kSpot, kSpot, kShortSpot, kSpot});
    EXPECT_THAT(mix_outs(), ElementsAre(1, 0.5, 1, 1, 0.5, 9));
    EXPECT_EQ(station.Slot_Ready[7], 0);
    EXPECT_EQ(station.Slot_End[7], -1);
    EXPECT_EQ(station.Load_Busy, 1);
    EXPECT_EQ(station.Cue_Slot, 1);
    EXPECT_EQ(playback->Players(1).PlayState(), MediaPlayer::kStopped) << "slot 1 opened";
}

TEST_F(Rotation, AntiskipFourLengthensEveryMix) {
    station.Antiskip = 4;
    rotate({kSpot,
            kShortSpot,
            {.file = "song150.mp3", .mix_in = 4, .mix_out = 6},
            kSpot,
            kShortSpot,
            {.file = "song150.mp3", .mix_out = 6}});
    EXPECT_THAT(mix_outs(), ElementsAre(3, 2.5, 8, 3, 2.5, 8));
}

TEST_F(Rotation, ASpotIntoASongEndsWhereTheMusicStartsAndFitsUnderTheSongBefore) {
    rotate({{.file = "song150.mp3", .mix_out = 8},
            // 5 s under a mix of 8: negative, so 0.5
            {.file = "spot10.wav", .mix_out = 2, .special = 1, .end = 5},
            {.file = "song165.mp3", .mix_in = 12, .mix_out = 4},
            // into a song whose music starts at 12
            {.file = "spot20.mp3", .mix_out = 2, .special = 1, .start = 2, .end = 20},
            {.file = "song180.mp3", .mix_in = 12, .mix_out = 3},
            {.file = "spot20.mp3", .mix_out = 2, .special = 1, .end = 6}});
    EXPECT_THAT(mix_outs(), ElementsAre(8, 0.5, _, 12, _, 2));
}

TEST_F(Rotation, ASongWithNoEndAfterASpotMakesTheSpotMixAtOnce) {
    rotate({{.file = "song150.mp3", .mix_out = 8},
            {.file = "spot20.mp3", .mix_out = 2, .special = 1},
            {.file = "song165.mp3", .mix_in = 30, .mix_out = 4},
            kSong,
            kSong,
            kSong});
    EXPECT_DOUBLE_EQ(station.Slot_End[2], 0);
    EXPECT_THAT(mix_outs(), ElementsAre(_, 1, _, _, _, _));
}

TEST_F(Rotation, MSevenModeStartsTheSeventhHalfASecondBeforeTheSixthEnds) {
    station.Ply7_On = 1;
    ASSERT_TRUE(viewer.mode_m7());
    rotate({kSong, kSong, kSong, kSong, kSong, kSong});
    EXPECT_THAT(mix_outs(), ElementsAre(_, _, _, _, _, 0.5));
}

TEST_F(Rotation, APlayerStillPlayingIsStoppedAndTheArraysWaitForTheNextTick) {
    MediaPlayer& fifth = playback->Players(5);
    fifth.Open(media_folder() + "/song255.mp3");
    fifth.play();
    rotate({kSong, kSong, kSong, kSong, kSong, kSong});
    EXPECT_EQ(fifth.PlayState(), MediaPlayer::kStopped);
    EXPECT_EQ(station.Slot_Ready[7], 1) << "not rotated yet";
    EXPECT_EQ(station.Load_Busy, 0);
    EXPECT_TRUE(playback->TimerViewer().Enabled());
    playback->TimerViewer_Timer();
    EXPECT_EQ(station.Slot_Ready[7], 0);
    EXPECT_EQ(station.Slot_File[1], "d:\\song150.mp3");
    EXPECT_EQ(station.Load_Busy, 1);
}

}  // namespace
}  // namespace tavora::test
