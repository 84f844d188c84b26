#include <gtest/gtest.h>

#include <cmath>

#include "bank_fixture.h"

namespace tavora::test {
namespace {

// A cue of the next set as it stands before the sixth song ends.
struct Cue {
    const char* file;
    int special;
    double start, end, mix_in, mix_out;
};
constexpr Cue kSong{"song150.mp3", 0, 0, -1, 0, 5};
constexpr Cue kSpot{"spot20.mp3", 1, 0, -1, 0, 9};
constexpr Cue kShortSpot{"spot10.wav", 1, 0, -1, 0, 9};
constexpr double kAny = NAN;

class Rotation : public BankTest {
  protected:
    void SetUp() override {
        BankTest::SetUp();
        make_probe();
        station.Ply_Now = 6;
        viewer.Visible = true;
    }
    // Cues the next set and ticks once with the sixth slot done: the set rotates.
    void rotate(const std::vector<Cue>& cues) {
        for (int i = 0; i < 6; ++i) {
            const Cue& cue = cues[static_cast<std::size_t>(i)];
            Song song{cue.file, cue.mix_in, cue.mix_out};
            song.special = cue.special;
            song.start = cue.start;
            song.end = cue.end;
            put(station, 7 + i, song, i + 1);
        }
        station.Slot_Started[6] = 1;
        playback->TimerViewer_Timer();
    }
    void expect_mix_outs(const std::vector<double>& expected) {
        for (int slot = 1; slot <= 6; ++slot) {
            const double want = expected[static_cast<std::size_t>(slot - 1)];
            if (!std::isnan(want)) {
                EXPECT_DOUBLE_EQ(station.Slot_MixOut[slot], want) << slot;
            }
        }
    }
};

TEST_F(Rotation, SpotsMixAtOnceIntoSpotsAndTheSixthKeepsItsOwn) {
    rotate({kSpot, kShortSpot, kSpot, kSpot, kShortSpot, kSpot});
    expect_mix_outs({1, 0.5, 1, 1, 0.5, 9});
    EXPECT_EQ(station.Slot_Ready[7], 0);
    EXPECT_EQ(station.Slot_End[7], -1);
    EXPECT_EQ(station.Load_Busy, 1);
    EXPECT_EQ(station.Cue_Slot, 1);
    EXPECT_EQ(playback->Players(1).PlayState(), MediaPlayer::kStopped) << "slot 1 opened";
}

TEST_F(Rotation, AntiskipFourLengthensEveryMix) {
    station.Antiskip = 4;
    Cue intro = kSong;
    intro.mix_in = 4;
    intro.mix_out = 6;
    Cue last = kSong;
    last.mix_out = 6;
    rotate({kSpot, kShortSpot, intro, kSpot, kShortSpot, last});
    expect_mix_outs({3, 2.5, 8, 3, 2.5, 8});
}

TEST_F(Rotation, ASpotIntoASongEndsWhereTheMusicStartsAndFitsUnderTheSongBefore) {
    rotate({{"song150.mp3", 0, 0, -1, 0, 8},
            {"spot10.wav", 1, 0, 5, 0, 2},  // 5 s under a mix of 8: negative, so 0.5
            {"song165.mp3", 0, 0, -1, 12, 4},
            {"spot20.mp3", 1, 2, 20, 0, 2},  // into a song whose music starts at 12
            {"song180.mp3", 0, 0, -1, 12, 3},
            {"spot20.mp3", 1, 0, 6, 0, 2}});
    expect_mix_outs({8, 0.5, kAny, 12, kAny, 2});
}

TEST_F(Rotation, ASongWithNoEndAfterASpotMakesTheSpotMixAtOnce) {
    rotate({{"song150.mp3", 0, 0, -1, 0, 8},
            {"spot20.mp3", 1, 0, -1, 0, 2},
            {"song165.mp3", 0, 0, -1, 30, 4},
            kSong,
            kSong,
            kSong});
    EXPECT_DOUBLE_EQ(station.Slot_End[2], 0);
    expect_mix_outs({kAny, 1, kAny, kAny, kAny, kAny});
}

TEST_F(Rotation, MSevenModeStartsTheSeventhHalfASecondBeforeTheSixthEnds) {
    station.Ply7_On = 1;
    ASSERT_TRUE(viewer.mode_m7());
    rotate({kSong, kSong, kSong, kSong, kSong, kSong});
    expect_mix_outs({kAny, kAny, kAny, kAny, kAny, 0.5});
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
