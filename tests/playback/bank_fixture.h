#pragma once

#include <gtest/gtest.h>

#include <string>

#include "stand_ins.h"

namespace tavora::test {

inline std::string media_folder() {
    return TAVORA_PLAYBACK_MEDIA;
}

// The rig as a test fixture, with eight songs of two and a half to four
// and a quarter minutes.
class BankTest : public ::testing::Test, public BankRig {
  protected:
    BankTest() : BankRig(media_folder()) {
        selection.songs = {{"song150.mp3"}, {"song165.mp3"}, {"song180.mp3"}, {"song195.mp3"},
                           {"song210.mp3"}, {"song225.mp3"}, {"song240.mp3"}, {"song255.mp3"}};
    }

    void SetUp() override { ASSERT_EQ(setup_error, ""); }

    void add_rows(const std::filesystem::path& file, int rows) {
        ASSERT_TRUE(test::add_rows(pool, file, rows));
    }
};

}  // namespace tavora::test
