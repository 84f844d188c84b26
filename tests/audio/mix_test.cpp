#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "audio/decoder.h"
#include "offline_station.h"

namespace tavora::audio {
namespace {

using test::OfflineStation;

double rms(const std::vector<float>& mix, int channel) {
    double sum = 0;
    const std::size_t frames = mix.size() / kChannels;
    for (std::size_t i = 0; i < frames; ++i)
        sum += double{mix[i * kChannels + channel]} * mix[i * kChannels + channel];
    return std::sqrt(sum / static_cast<double>(frames));
}

TEST(Mix, TwoPlayersAtTheirOwnVolumesSumToTheExpectedLevel) {
    OfflineStation station;
    auto quiet = station.open("tone.wav");  // 440 Hz left, 660 Hz right, peak 0.5
    auto loud = station.open("other.wav");  // 1000 Hz both sides, peak 0.5
    quiet->Volume(-600);
    loud->Volume(0);
    quiet->play();
    loud->play();
    station.render(kRate / 2);
    const auto second = station.render(kRate);  // whole cycles of all three tones
    const double tone = 0.5 / std::sqrt(2.0);
    const double gain = std::pow(10.0, -600 / 2000.0);
    const double expected = std::sqrt(tone * tone * gain * gain + tone * tone);
    EXPECT_NEAR(rms(second, 0), expected, 0.002);
    EXPECT_NEAR(rms(second, 1), expected, 0.002);
}

// A constant level shows the gain itself: every change is a ramp no steeper than its
// slope, it lands exactly, and -2000 and Mute are silence.
TEST(Mix, GainChangesRampWithoutAStep) {
    OfflineStation station;
    auto player = station.open("level.wav");
    player->play();
    std::vector<float> all = station.render(1000);
    const std::vector<int> volumes = {-600, -2000, 0, -1, -1500, -300};
    for (int volume : volumes) {
        player->Volume(volume);
        const auto part = station.render(1000);
        EXPECT_FLOAT_EQ(part.back(), 0.5f * gain_of_volume(volume)) << volume;
        all.insert(all.end(), part.begin(), part.end());
    }
    player->Mute(true);
    const auto muted = station.render(1000);
    EXPECT_EQ(muted.back(), 0.0f);
    all.insert(all.end(), muted.begin(), muted.end());
    player->Mute(false);
    const auto back = station.render(1000);
    EXPECT_FLOAT_EQ(back.back(), 0.5f * gain_of_volume(-300));
    all.insert(all.end(), back.begin(), back.end());

    const float slope = 0.5f / Voice::kRampFrames;
    for (std::size_t i = kChannels; i < all.size(); i += kChannels) {
        ASSERT_LE(std::fabs(all[i] - all[i - kChannels]), slope * 1.001f) << "frame " << i / 2;
    }
}

TEST(Mix, TapsAndTheWavFileGetExactlyTheMix) {
    const std::string path = test::media("mix-out.wav");
    std::vector<float> tapped;
    std::vector<float> rendered;
    {
        OfflineStation station;
        station.engine().add_tap([&tapped](const float* frames, std::size_t count) {
            tapped.insert(tapped.end(), frames, frames + count * kChannels);
        });
        ASSERT_TRUE(station.engine().write_wav(path));
        auto player = station.open("tone.flac");
        player->play();
        for (int i = 0; i < 5; ++i) {
            const auto part = station.render(3000);
            rendered.insert(rendered.end(), part.begin(), part.end());
        }
    }
    EXPECT_EQ(tapped, rendered);
    Decoder written;
    ASSERT_EQ(written.open(path).status, OpenStatus::Succeeded);
    ASSERT_EQ(written.length(), 15000);
    std::vector<float> back(15000 * kChannels);
    ASSERT_EQ(written.read(back.data(), 15000), 15000u);
    EXPECT_EQ(back, rendered);
}

}  // namespace
}  // namespace tavora::audio
