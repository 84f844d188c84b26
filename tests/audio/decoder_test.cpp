#include "audio/decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "audio/format.h"
#include "offline_station.h"

namespace tavora::audio {
namespace {

using test::media;

std::vector<float> read_all(Decoder& decoder) {
    std::vector<float> all;
    std::vector<float> chunk(4096 * kChannels);
    while (std::size_t got = decoder.read(chunk.data(), 4096)) {
        all.insert(all.end(), chunk.begin(), chunk.begin() + got * kChannels);
    }
    return all;
}

class EveryFormat : public testing::TestWithParam<const char*> {};

// Every format opens, says how long it is, and that is exactly what it decodes to;
// the tone comes out at its level on the right channel.
TEST_P(EveryFormat, LengthIsTheDecodedLengthAndTheToneIsIntact) {
    Decoder decoder;
    const OpenResult result = decoder.open(media(GetParam()));
    ASSERT_EQ(result.status, OpenStatus::Succeeded) << result.error;
    EXPECT_NEAR(seconds_of_frames(decoder.length()), 3.0, 0.08);
    const std::vector<float> all = read_all(decoder);
    // ASF stamps its packets in milliseconds, so its length is good to a millisecond; the
    // LAME tag's delay and padding make an MP3 exact: three seconds in, three seconds out.
    const std::string name = GetParam();
    const double slack = name.find(".wm") != std::string::npos ? 48 : name == "tone.mp3" ? 0 : 2;
    EXPECT_NEAR(static_cast<double>(all.size() / kChannels), decoder.length(), slack);
    if (name == "tone.mp3") {
        EXPECT_EQ(decoder.length(), 3 * kRate);
    }
    ASSERT_GT(all.size() / kChannels, std::size_t{2 * kRate});
    EXPECT_NEAR(test::rms(all, 0, kRate / 2, kRate), 0.5 / std::sqrt(2.0), 0.02);
    EXPECT_NEAR(test::rms(all, 1, kRate / 2, kRate), 0.5 / std::sqrt(2.0), 0.02);
}

INSTANTIATE_TEST_SUITE_P(Formats, EveryFormat,
                         testing::Values("tone.wav", "tone.mp3", "tone44.mp3", "tone.ogg",
                                         "tone.opus", "tone.flac", "tone.m4a", "tone.wma",
                                         "tone.mp2", "tone.mpg", "tone.avi", "tone.mov",
                                         "tone.wmv"));

// A seek lands on its frame: the samples are those that reading straight through gives.
class SeekLands : public testing::TestWithParam<std::pair<const char*, double>> {};

TEST_P(SeekLands, SameSamplesAsReadingThrough) {
    const auto [name, tolerance] = GetParam();
    Decoder decoder;
    ASSERT_EQ(decoder.open(media(name)).status, OpenStatus::Succeeded);
    const std::vector<float> all = read_all(decoder);
    for (const std::int64_t target : {std::int64_t{77777}, std::int64_t{12345}, std::int64_t{0}}) {
        ASSERT_TRUE(decoder.seek(target));
        std::vector<float> got(2000 * kChannels);
        ASSERT_EQ(decoder.read(got.data(), 2000), 2000u);
        double worst = 0;
        for (std::size_t i = 0; i < got.size(); ++i) {
            worst = std::max(worst, double{std::fabs(got[i] - all[target * kChannels + i])});
        }
        EXPECT_LE(worst, tolerance) << name << " at " << target;
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, SeekLands,
                         testing::Values(std::pair{"index.wav", 0.0}, std::pair{"tone.flac", 0.0},
                                         std::pair{"tone.mp3", 1e-3}, std::pair{"tone.ogg", 1e-3},
                                         std::pair{"tone.opus", 1e-2}));

TEST(Decoder, AMissingFileOrAPictureAloneFailsWithAClearMessage) {
    Decoder decoder;
    const OpenResult missing = decoder.open(media("no such file.mp3"));
    EXPECT_EQ(missing.status, OpenStatus::Failed);
    EXPECT_NE(missing.error.find("no such file.mp3"), std::string::npos) << missing.error;
    EXPECT_FALSE(decoder.is_open());

    // A picture alone has no sound to play.
    EXPECT_EQ(decoder.open(media("no-sound.avi")).status, OpenStatus::Failed);
}

// A float WAV cut short after its first second, with damage in what is left: the header
// still says four seconds, but the length is what the file holds, and the samples that
// aren't numbers come out as silence while their neighbours are untouched.
TEST(Decoder, DamagedWavPlaysWhatItHolds) {
    std::string bytes = test::file_bytes(media("index.wav"));
    const std::size_t data = bytes.find("data") + 8;
    ASSERT_GT(data, 8u);
    bytes.resize(data + kRate * kChannels * sizeof(float));
    const std::uint32_t poison[] = {0x7fc00000u, 0x7f800000u, 0xff800000u};  // NaN, +Inf, -Inf
    const std::size_t poisoned_frame = 1000;
    for (std::size_t i = 0; i < 3; ++i)
        std::memcpy(&bytes[data + (poisoned_frame + i) * kChannels * sizeof(float)], &poison[i],
                    sizeof(float));
    const std::string path = media("cut-short.wav");
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;

    Decoder decoder;
    ASSERT_EQ(decoder.open(path).status, OpenStatus::Succeeded);
    EXPECT_EQ(decoder.length(), kRate);
    const std::vector<float> all = read_all(decoder);
    ASSERT_EQ(all.size(), std::size_t{kRate} * kChannels);
    for (std::size_t frame = poisoned_frame; frame < poisoned_frame + 3; ++frame)
        EXPECT_EQ(all[frame * kChannels], 0.0f) << frame;
    EXPECT_FLOAT_EQ(all[(poisoned_frame + 3) * kChannels], (poisoned_frame + 3) / 1048576.0f);
    EXPECT_FLOAT_EQ(all[poisoned_frame * kChannels + 1], 0.25f);
}

}  // namespace
}  // namespace tavora::audio
