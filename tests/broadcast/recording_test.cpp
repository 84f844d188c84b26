#include <gtest/gtest.h>

#include <filesystem>
#include <mutex>
#include <thread>

#include "audio/mix_tap.h"
#include "broadcast/encoding/live_encoder.h"
#include "decoded.h"
#include "offline_station.h"
#include "platform/path_map.h"
#include "test_folder.h"

namespace tavora {
namespace {

using audio::test::OfflineStation;

// A station folder, an offline engine playing the ten-minute programme, and an
// encoder on its tap with the profile text given.
class Recording : public ::testing::Test {
  protected:
    std::filesystem::path home() const { return folder_.path() / "tavora"; }

    std::unique_ptr<LiveEncoder> encoder_for(const std::string& profile_text) {
        const auto profile = folder_.Write("tavora/test.asd", profile_text);
        auto encoder =
            std::make_unique<LiveEncoder>(tap_, paths_, titles_, [this](const std::string& l) {
                std::lock_guard lock(log_mutex_);
                log_ += l + "\n";
            });
        EXPECT_TRUE(encoder->LoadASD(profile.string())) << log_;
        return encoder;
    }
    void play_programme() {
        player_ = station_.open("ten_minutes.flac");
        player_->play();
    }
    // Renders `seconds` of the mix in the sizes a simulator step gives.
    void render(double seconds) {
        const auto frames = static_cast<std::size_t>(seconds * audio::kRate);
        for (std::size_t done = 0; done < frames; done += 4800)
            station_.render(std::min<std::size_t>(4800, frames - done));
    }

    TestFolder folder_;
    PathMap paths_{home()};
    OfflineStation station_;
    audio::MixTap tap_{station_.engine()};
    AirTitle titles_;
    std::shared_ptr<audio::Player> player_;
    std::mutex log_mutex_;
    std::string log_;
};

struct Kind {
    const char* codec;
    int bitrate, rate, channels;
    const char* decoded_as;
    int frame;  // the codec's largest block of samples
};

std::string kind_name(const ::testing::TestParamInfo<Kind>& kind) {
    return std::string(kind.param.codec) + std::to_string(kind.param.bitrate);
}

class RecordingKinds : public Recording, public ::testing::WithParamInterface<Kind> {};

// Ten minutes of the air, encoded and decoded back by FFmpeg's own decoders: the
// codec the profile asked for, the length to within a codec block and a tap block,
// the programme's level, and the size the encoder reported.
TEST_P(RecordingKinds, TenMinutesOfTheAirDecodeBackWhole) {
    const Kind k = GetParam();
    std::filesystem::create_directories(home());
    auto encoder = encoder_for(
        "codec = " + std::string(k.codec) + "\nbitrate = " + std::to_string(k.bitrate) +
        "\nsample_rate = " + std::to_string(k.rate) + "\nchannels = " + std::to_string(k.channels) +
        "\nfile = c:\\tavora\\air.rec\n");
    play_programme();
    ASSERT_TRUE(encoder->Start()) << log_;
    EXPECT_TRUE(encoder->IsRecording());
    render(600);
    encoder->Stop();
    EXPECT_FALSE(encoder->IsStarted());

    const auto file = home() / "air.rec";
    EXPECT_EQ(encoder->RecordSize(), static_cast<std::int64_t>(std::filesystem::file_size(file)));
    EXPECT_NEAR(encoder->RecordDuration(), 600.0, 0.1);
    const test::Decoded d = test::decode(file.string());
    ASSERT_TRUE(d.opened);
    EXPECT_EQ(d.codec, k.decoded_as);
    const double block = static_cast<double>(k.frame) / k.rate +
                         static_cast<double>(audio::MixRing::kBlockFrames) / audio::kRate;
    EXPECT_NEAR(d.seconds, 600.0, block);
    // Two tones at 0.4 peak: 0.28 RMS; lossy codecs at low rates lose a little.
    EXPECT_GT(d.rms, 0.2);
    EXPECT_LT(d.rms, 0.35);
    EXPECT_EQ(encoder->dropped_frames(), 0);
}

INSTANTIATE_TEST_SUITE_P(EveryCodec, RecordingKinds,
                         ::testing::Values(Kind{"wma", 128, 44100, 2, "wmav2", 2048},
                                           Kind{"mp3", 128, 44100, 2, "mp3", 1152},
                                           Kind{"mp3", 24, 22050, 1, "mp3", 576},
                                           Kind{"vorbis", 128, 44100, 2, "vorbis", 2048},
                                           Kind{"opus", 96, 48000, 2, "opus", 960}),
                         kind_name);

TEST_F(Recording, TheMaximumSizeEndsTheFileWhereItStandsAndItStillPlays) {
    std::filesystem::create_directories(home());
    auto encoder = encoder_for("codec = mp3\nbitrate = 128\nfile = c:\\tavora\\max.asf\n");
    encoder->RecordMaxSize(200'000);
    play_programme();
    ASSERT_TRUE(encoder->Start());
    render(60);  // 960 kB at 128 kb/s, were there no limit
    EXPECT_FALSE(encoder->IsRecording());
    const auto size = std::filesystem::file_size(home() / "max.asf");
    EXPECT_GE(size, 200'000u);
    EXPECT_LT(size, 200'000u + 16'384u);  // at most a packet and the muxer's buffer over
    encoder->Stop();
    const test::Decoded d = test::decode((home() / "max.asf").string());
    EXPECT_NEAR(d.seconds, 200'000 * 8 / 128'000.0, 1.2);
    EXPECT_GT(d.rms, 0.2);
    EXPECT_NE(log_.find("reached its maximum size"), std::string::npos) << log_;
}

TEST_F(Recording, ACodecThatRefusesTheBitrateOrAMissingFolderStartsNothing) {
    const auto profile =
        folder_.Write("tavora/bad.asd", "codec = wma\nbitrate = 20\nfile = c:\\tavora\\x.asf\n");
    LiveEncoder encoder(tap_, paths_, titles_, [this](const std::string& l) { log_ += l + "\n"; });
    EXPECT_FALSE(encoder.LoadASD(profile.string()));
    EXPECT_FALSE(encoder.Start());
    EXPECT_NE(log_.find("wma refuses 20 kb/s at 44100 Hz, 2 channel(s)"), std::string::npos)
        << log_;

    const auto away =
        folder_.Write("tavora/away.asd", "codec = mp3\nfile = c:\\tavora\\no\\such\\x.asf\n");
    ASSERT_TRUE(encoder.LoadASD(away.string()));
    EXPECT_FALSE(encoder.Start());
    EXPECT_FALSE(encoder.IsStarted());
}

// /dev/full fails every write as a full disk does: the recording ends with its
// line in the log, and the air it was taking goes on.
TEST_F(Recording, AFullDiskEndsTheRecordingWithALineAndTheAirGoesOn) {
    auto encoder = encoder_for("codec = mp3\nbitrate = 128\nfile = z:\\dev\\full\n");
    play_programme();
    ASSERT_TRUE(encoder->Start()) << log_;
    render(20);
    EXPECT_FALSE(encoder->IsRecording());
    EXPECT_TRUE(encoder->IsStarted());
    EXPECT_NE(log_.find("failed (is the disk full?); the recording ends here, the air goes on"),
              std::string::npos)
        << log_;
    const double heard = player_->CurrentPosition();
    render(5);
    EXPECT_NEAR(player_->CurrentPosition() - heard, 5.0, 0.1);
    encoder->Stop();
}

// The mixer's side of the hand-over never waits on air: what doesn't fit is counted.
// Offline, where there is no air, it waits for the consumer and loses nothing.
TEST(MixRing, OnAirAFullRingDropsAndCountsOfflineItWaits) {
    std::vector<float> block(audio::MixRing::kBlockFrames * audio::kChannels, 0.25f);
    audio::MixRing live(4, false);
    for (int i = 0; i < 6; ++i)
        live.push(block.data(), audio::MixRing::kBlockFrames);
    EXPECT_EQ(live.take_dropped(), 2 * static_cast<std::int64_t>(audio::MixRing::kBlockFrames));
    EXPECT_EQ(live.take_dropped(), 0);

    audio::MixRing offline(4, true);
    std::size_t taken = 0;
    std::thread consumer([&] {
        while (taken < 20 * audio::MixRing::kBlockFrames) {
            if (auto* b = offline.front()) {
                taken += b->frames;
                offline.release();
            } else {
                std::this_thread::yield();
            }
        }
    });
    for (int i = 0; i < 20; ++i)
        offline.push(block.data(), audio::MixRing::kBlockFrames);
    consumer.join();
    EXPECT_EQ(taken, 20 * audio::MixRing::kBlockFrames);
    EXPECT_EQ(offline.take_dropped(), 0);
}

}  // namespace
}  // namespace tavora
