#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "audio/decoder.h"
#include "offline_station.h"

namespace tavora::audio {
namespace {

using test::OfflineStation;
using test::rms;

constexpr std::size_t kRamp = Voice::kRampFrames;

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
        EXPECT_FLOAT_EQ(station.render(1000, all).back(), 0.5f * gain_of_volume(volume)) << volume;
    }
    player->Mute(true);
    EXPECT_EQ(station.render(1000, all).back(), 0.0f);
    player->Mute(false);
    EXPECT_FLOAT_EQ(station.render(1000, all).back(), 0.5f * gain_of_volume(-300));

    const float slope = 0.5f / Voice::kRampFrames;
    for (std::size_t i = kChannels; i < all.size(); i += kChannels) {
        ASSERT_LE(std::fabs(all[i] - all[i - kChannels]), slope * 1.001f) << "frame " << i / 2;
    }
}

// other.wav is a 1000 Hz tone at peak 0.5: its own steepest step between frames is
// 2·π·f/rate·A, and its crests fall on frames 12 + 48·k.
constexpr double kToneStep = 2 * std::numbers::pi * 1000.0 / kRate * 0.5;
constexpr std::size_t kCrest = 100 * 48 + 12;
constexpr std::size_t kTenMs = kRate / 100;

float largest_step(const std::vector<float>& mix) {
    float largest = 0.0f;
    for (std::size_t i = kChannels; i < mix.size(); ++i)
        largest = std::max(largest, std::fabs(mix[i] - mix[i - kChannels]));
    return largest;
}

// Leaving the tone at a crest would step by its whole amplitude; a ramp adds at most
// A / ramp length to the tone's own slope.
TEST(StopAndSeek, SeekStopAndOpenLeaveALoudToneWithoutAStep) {
    const float bound = static_cast<float>(kToneStep * 1.1);
    OfflineStation station;
    auto player = station.open("other.wav");
    player->play();
    std::vector<float> all = station.render(kCrest);
    ASSERT_GT(all.back(), 0.49f);

    // Seek from a crest to a trough; the tone is back at full level within 10 ms.
    player->CurrentPosition(1.0 + 36.0 / kRate);
    const auto seek = station.render(2 * kTenMs, all);
    EXPECT_LT(largest_step(all), bound);
    const auto back = seek.begin() + kTenMs * kChannels;
    EXPECT_GT(*std::max_element(back, back + 48 * kChannels), 0.49f);
    EXPECT_EQ(player->PlayState(), Player::kPlaying);

    // Bring the tone to a crest again, then Stop: silence within 10 ms.
    const std::size_t to_crest = (48 - (2 * kTenMs - kRamp + 36) % 48 + 12) % 48;
    all = station.render(to_crest + 48 * 10);
    ASSERT_GT(all.back(), 0.49f);
    player->Stop();
    EXPECT_EQ(player->PlayState(), Player::kStopped);
    station.render(kTenMs, all);
    const auto after = station.render(kTenMs);
    EXPECT_LT(largest_step(all), bound);
    EXPECT_TRUE(std::all_of(after.begin(), after.end(), [](float x) { return x == 0.0f; }));
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 0.0);

    // From the start to a crest again, then another file opened over it: the same.
    player->play();
    all = station.render(kCrest % 48 + 48 * 10 + 1);
    ASSERT_GT(all.back(), 0.49f);
    player->Open(test::media("level.wav"));
    station.render(kTenMs, all);
    const auto opened = station.render(kTenMs);
    EXPECT_LT(largest_step(all), bound);
    EXPECT_TRUE(std::all_of(opened.begin(), opened.end(), [](float x) { return x == 0.0f; }));
}

// The old place ends under the ramp down: the seek still lands, and the song plays on.
TEST(StopAndSeek, ASeekJustBeforeTheEndIsNotTheEnd) {
    OfflineStation station;
    auto player = station.open("other.wav");
    int stops = 0;
    player->PlayStateChange = [&stops](int, int state) { stops += state == Player::kStopped; };
    player->SelectionEnd(1.0);
    player->CurrentPosition(0.5);
    player->play();
    station.render(kRate / 2 - 100);
    player->CurrentPosition(0.25);
    const auto mix = station.render(kTenMs);
    EXPECT_EQ(player->PlayState(), Player::kPlaying);
    EXPECT_EQ(stops, 0);
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 0.25 + double(kTenMs - 100) / kRate);
    EXPECT_GT(*std::max_element(mix.end() - 48 * kChannels, mix.end()), 0.49f);
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
