#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "audio/air_meter.h"
#include "audio/decoder.h"
#include "audio/format.h"
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

    EXPECT_LE(largest_step(all), 0.5f / kRamp * 1.001f);
}

// Leaving the tone at a crest would step by its whole amplitude; a ramp adds at most
// A / ramp length to the tone's own slope. Within 10 ms a seek from a crest to a trough
// has the tone back at full level, and a stop or another file opened over it is silence.
TEST(StopAndSeek, SeekStopAndOpenLeaveALoudToneWithoutAStep) {
    const std::pair<const char*, std::function<void(Player&)>> actions[] = {
        {"seek", [](Player& player) { player.CurrentPosition(1.0 + 36.0 / kRate); }},
        {"stop", [](Player& player) { player.Stop(); }},
        {"open", [](Player& player) { player.Open(test::media("level.wav")); }},
    };
    for (const auto& [name, action] : actions) {
        SCOPED_TRACE(name);
        OfflineStation station;
        auto player = station.open("other.wav");
        player->play();
        std::vector<float> all = station.render(kCrest);
        ASSERT_GT(all.back(), 0.49f);
        action(*player);
        const auto later = station.render(2 * kTenMs, all);
        EXPECT_LT(largest_step(all), static_cast<float>(kToneStep * 1.1));
        const std::vector<float> settled(later.begin() + kTenMs * kChannels, later.end());
        if (std::string(name) == "seek") {
            EXPECT_GT(*std::max_element(settled.begin(), settled.end()), 0.49f);
            EXPECT_EQ(player->PlayState(), Player::kPlaying);
        } else {
            EXPECT_TRUE(
                std::all_of(settled.begin(), settled.end(), [](float x) { return x == 0; }));
        }
    }
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
        for (int i = 0; i < 5; ++i)
            station.render(3000, rendered);
    }
    EXPECT_EQ(tapped, rendered);
    Decoder written;
    ASSERT_EQ(written.open(path).status, OpenStatus::Succeeded);
    ASSERT_EQ(written.length(), 15000);
    std::vector<float> back(15000 * kChannels);
    ASSERT_EQ(written.read(back.data(), 15000), 15000u);
    EXPECT_EQ(back, rendered);
}

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
