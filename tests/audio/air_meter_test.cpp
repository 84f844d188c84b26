#include "audio/air_meter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "audio/format.h"

namespace tavora::audio {
namespace {

// A second of a 1 kHz tone at `dbfs` (or silence), in blocks as a mixer hands them on.
void play(AirMeter& meter, double seconds, double dbfs) {
    const float amplitude = dbfs <= -200 ? 0.0f : static_cast<float>(std::pow(10.0, dbfs / 20.0));
    std::vector<float> block(1024 * kChannels);
    static std::int64_t t = 0;
    for (std::int64_t left = frames_of_seconds(seconds); left > 0; left -= 1024) {
        const std::size_t n = static_cast<std::size_t>(std::min<std::int64_t>(left, 1024));
        for (std::size_t i = 0; i < n; ++i, ++t) {
            const float s = amplitude * static_cast<float>(std::sin(2 * M_PI * 1000.0 * t / kRate));
            block[2 * i] = block[2 * i + 1] = s;
        }
        meter.feed(block.data(), n);
    }
}

TEST(AirMeter, CountsTheQuietSinceTheLastSoundAboveItsThreshold) {
    AirMeter meter(-45);
    play(meter, 2, -300);
    EXPECT_NEAR(meter.quiet_seconds(), 2, 0.01) << "nothing has sounded yet";
    play(meter, 1, -20);
    EXPECT_LT(meter.quiet_seconds(), 0.005);
    play(meter, 3, -50);  // under the threshold: quiet
    EXPECT_NEAR(meter.quiet_seconds(), 3, 0.01);
    play(meter, 0.5, -40);
    play(meter, 1.5, -300);
    EXPECT_NEAR(meter.quiet_seconds(), 1.5, 0.01);
    meter.threshold_dbfs(-55);  // now the -50 tone is sound
    play(meter, 1, -50);
    EXPECT_LT(meter.quiet_seconds(), 0.005);
}

}  // namespace
}  // namespace tavora::audio
