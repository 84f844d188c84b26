#include <gtest/gtest.h>

#include "bank_fixture.h"

namespace tavora::test {
namespace {

// The next set as it stands before the sixth song ends: each entry is
// (file, special, start, end, mix in, mix out).
struct Cue {
    const char* file;
    int special;
    double start, end, mix_in, mix_out;
};

class Rotation : public BankTest {
  protected:
    void SetUp() override {
        BankTest::SetUp();
        make_probe();
        station.Ply_Now = 6;
        viewer.Visible = true;
    }

    void cue_next_set(const std::vector<Cue>& cues) {
        for (int i = 0; i < 6; ++i) {
            const Cue& cue = cues[static_cast<std::size_t>(i)];
            Song song{cue.file, cue.mix_in, cue.mix_out};
            song.special = cue.special;
            song.start = cue.start;
            song.end = cue.end;
            put(station, 7 + i, song, i + 1);
        }
    }
    // Six songs, each mixing five seconds before its end.
    void cue_plain_set() {
        std::vector<Cue> cues;
        for (const char* file : {"song150.mp3", "song165.mp3", "song180.mp3", "song195.mp3",
                                 "song210.mp3", "song225.mp3"})
            cues.push_back({file, 0, 0, -1, 0, 5});
        cue_next_set(cues);
    }
    // One tick with the sixth slot done: the set rotates.
    void rotate() {
        station.Slot_Started[6] = 1;
        playback->TimerViewer_Timer();
    }
    std::vector<double> mix_outs() const {
        return {station.Slot_MixOut.begin() + 1, station.Slot_MixOut.begin() + 7};
    }
};

TEST_F(Rotation, SpotsMixAtOnceIntoSpotsAndTheSixthKeepsItsOwn) {
    cue_next_set({{"spot20.mp3", 1, 0, -1, 0, 9},
                  {"spot10.wav", 1, 0, -1, 0, 9},
                  {"spot20.mp3", 1, 0, -1, 0, 9},
                  {"spot20.mp3", 1, 0, -1, 0, 9},
                  {"spot10.wav", 1, 0, -1, 0, 9},
                  {"spot20.mp3", 1, 0, -1, 0, 9}});
    rotate();
    EXPECT_EQ(mix_outs(), (std::vector<double>{1, 0.5, 1, 1, 0.5, 9}));
    EXPECT_EQ(station.Slot_Ready[7], 0);
    EXPECT_EQ(station.Slot_End[7], -1);
    EXPECT_EQ(station.Load_Busy, 1);
    EXPECT_EQ(station.Cue_Slot, 1);
    EXPECT_EQ(playback->Players(1).PlayState(), MediaPlayer::kStopped) << "slot 1 opened";
}

TEST_F(Rotation, AntiskipFourLengthensEveryMix) {
    station.Antiskip = 4;
    cue_next_set({{"spot20.mp3", 1, 0, -1, 0, 9},
                  {"spot10.wav", 1, 0, -1, 0, 9},
                  {"song150.mp3", 0, 0, -1, 4, 6},
                  {"spot20.mp3", 1, 0, -1, 0, 9},
                  {"spot10.wav", 1, 0, -1, 0, 9},
                  {"song150.mp3", 0, 0, -1, 0, 6}});
    rotate();
    EXPECT_EQ(mix_outs(), (std::vector<double>{3, 2.5, 8, 3, 2.5, 8}));
}

TEST_F(Rotation, ASpotIntoASongEndsWhereTheMusicStartsAndFitsUnderTheSongBefore) {
    cue_next_set({{"song150.mp3", 0, 0, -1, 0, 8},
                  {"spot10.wav", 1, 0, 5, 0, 2},  // 5 s under a mix of 8: negative, so 0.5
                  {"song165.mp3", 0, 0, -1, 12, 4},
                  {"spot20.mp3", 1, 2, 20, 0, 2},  // into a song whose music starts at 12
                  {"song180.mp3", 0, 0, -1, 12, 3},
                  {"spot20.mp3", 1, 0, 6, 0, 2}});
    rotate();
    EXPECT_DOUBLE_EQ(station.Slot_MixOut[2], 0.5);
    EXPECT_DOUBLE_EQ(station.Slot_MixOut[4], 12);
    EXPECT_DOUBLE_EQ(station.Slot_MixOut[1], 8);
    EXPECT_DOUBLE_EQ(station.Slot_MixOut[6], 2) << "nothing follows the sixth";
}

TEST_F(Rotation, ASongWithNoEndAfterASpotMakesTheSpotMixAtOnce) {
    cue_next_set({{"song150.mp3", 0, 0, -1, 0, 8},
                  {"spot20.mp3", 1, 0, -1, 0, 2},
                  {"song165.mp3", 0, 0, -1, 30, 4},
                  {"song180.mp3", 0, 0, -1, 0, 5},
                  {"song195.mp3", 0, 0, -1, 0, 5},
                  {"song210.mp3", 0, 0, -1, 0, 5}});
    rotate();
    EXPECT_DOUBLE_EQ(station.Slot_End[2], 0);
    EXPECT_DOUBLE_EQ(station.Slot_MixOut[2], 1);
}

TEST_F(Rotation, MSevenModeStartsTheSeventhHalfASecondBeforeTheSixthEnds) {
    station.Ply7_On = 1;
    ASSERT_TRUE(viewer.mode_m7());
    cue_plain_set();
    rotate();
    EXPECT_DOUBLE_EQ(station.Slot_MixOut[6], 0.5);
}

TEST_F(Rotation, APlayerStillPlayingIsStoppedAndTheArraysWaitForTheNextTick) {
    cue_plain_set();
    MediaPlayer& fifth = playback->Players(5);
    fifth.Open(media_folder() + "/song255.mp3");
    fifth.play();
    rotate();
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
