#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "sim/dead_air.h"

namespace tavora {
namespace {

TEST(DeadAir, CountsOnlyStretchesOfTwoSecondsOrMoreAfterTheFirstSound) {
    DeadAir dead_air;
    dead_air.quiet_from(0);  // start-up silence is not counted
    dead_air.sound_from(30);
    dead_air.quiet_from(100);
    dead_air.sound_from(101.9);  // a short gap between songs
    dead_air.quiet_from(200);
    dead_air.quiet_from(201);  // still the same stretch
    dead_air.sound_from(203.5);
    dead_air.quiet_from(300);
    dead_air.finish(310);
    EXPECT_DOUBLE_EQ(dead_air.total_seconds(), 3.5 + 10);
    EXPECT_DOUBLE_EQ(dead_air.longest_seconds(), 10);
}

TEST(DeadAir, TheMeterHearsSoundAboveMinusFiftyDecibels) {
    constexpr int kRate = 1000;
    DeadAir dead_air;
    MixLevelMeter meter(dead_air, kRate);
    auto play = [&meter](double seconds, float level) {
        std::vector<float> block(static_cast<std::size_t>(seconds * kRate) * 2);
        for (std::size_t i = 0; i < block.size(); ++i) {
            block[i] = (i / 2) % 2 ? level : -level;
        }
        meter.feed(block.data(), block.size() / 2);
    };
    play(1, 0.0f);
    play(5, 0.5f);
    play(3, 0.002f);  // -54 dBFS: quiet
    play(1, 0.004f);  // -48 dBFS: heard
    play(1.5, 0.0f);  // too short to count
    play(1, 0.5f);
    play(2, 0.0f);
    dead_air.finish(meter.seconds());
    EXPECT_NEAR(dead_air.total_seconds(), 5.0, 0.02);
}

}  // namespace
}  // namespace tavora
