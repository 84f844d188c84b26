#pragma once

#include <gtest/gtest.h>

#include <string>

#include "stand_ins.h"

namespace tavora::test {

inline std::string media_folder() {
    return TAVORA_PLAYBACK_MEDIA;
}

// The rig as a fixture, with eight songs of two and a half to four and a
// quarter minutes.
class BankTest : public ::testing::Test, public BankRig {
  protected:
    BankTest() : BankRig(media_folder()) {
        for (int seconds = 150; seconds <= 255; seconds += 15)
            selection.songs.push_back({"song" + std::to_string(seconds) + ".mp3"});
    }
    void SetUp() override { ASSERT_EQ(setup_error, ""); }

    // Runs until the first set plays.
    void start_set() {
        run();
        ASSERT_TRUE(wait_until([&] { return station.Slot_Ready[1] == 3; }, 10));
        ASSERT_TRUE(viewer.Visible);
    }
    bool plays(int n) { return playback->Players(n).PlayState() == MediaPlayer::kPlaying; }
    const DialogRequest& asked() { return fake.dialogs.shown().back().request; }
    std::string log_text() { return fake.folder.Read(fake.paths.ToNative(station.Log_Name).path); }
};

}  // namespace tavora::test
