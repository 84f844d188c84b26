#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

#include "audio/mix_tap.h"
#include "broadcast/encoding/live_encoder.h"
#include "broadcast/encoding/server_stats.h"
#include "decoded.h"
#include "icecast_server.h"
#include "offline_station.h"
#include "platform/path_map.h"
#include "test_folder.h"

namespace tavora {
namespace {

using namespace std::chrono_literals;

// A station folder, an engine with the given output, and live encoders on its tap
// that log here.
class Encoding : public ::testing::Test {
  protected:
    explicit Encoding(audio::OutputKind output = audio::OutputKind::Offline) : station_(output) {}

    std::filesystem::path home() const { return folder_.path() / "tavora"; }
    std::unique_ptr<LiveEncoder> encoder_for(const std::string& profile_text, bool loads = true) {
        const auto profile = folder_.Write("tavora/test.asd", profile_text);
        auto encoder =
            std::make_unique<LiveEncoder>(tap_, paths_, titles_, [this](const std::string& l) {
                std::lock_guard lock(mutex_);
                log_ += l + "\n";
            });
        EXPECT_EQ(encoder->LoadASD(profile.string()), loads) << log();
        return encoder;
    }
    void play(const std::string& media) {
        player_ = station_.open(media);
        player_->play();
    }
    std::string log() {
        std::lock_guard lock(mutex_);
        return log_;
    }
    std::size_t count_in_log(const std::string& words) {
        const std::string text = log();
        std::size_t n = 0;
        for (auto at = text.find(words); at != std::string::npos; at = text.find(words, at + 1))
            ++n;
        return n;
    }

    TestFolder folder_;
    PathMap paths_{home()};
    audio::test::OfflineStation station_;
    audio::MixTap tap_{station_.engine()};
    AirTitle titles_;
    std::shared_ptr<audio::Player> player_;
    std::mutex mutex_;
    std::string log_;
};

// The ten-minute programme on an offline engine.
class Recording : public Encoding {
  protected:
    void SetUp() override { play("ten_minutes.flac"); }
    // Renders `seconds` of the mix in the sizes a simulator step gives.
    void render(double seconds) {
        const auto frames = static_cast<std::size_t>(seconds * audio::kRate);
        for (std::size_t done = 0; done < frames; done += 4800)
            station_.render(std::min<std::size_t>(4800, frames - done));
    }
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
    auto encoder = encoder_for(
        "codec = " + std::string(k.codec) + "\nbitrate = " + std::to_string(k.bitrate) +
        "\nsample_rate = " + std::to_string(k.rate) + "\nchannels = " + std::to_string(k.channels) +
        "\nfile = c:\\tavora\\air.rec\n");
    ASSERT_TRUE(encoder->Start()) << log();
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
    auto encoder = encoder_for("codec = mp3\nbitrate = 128\nfile = c:\\tavora\\max.asf\n");
    encoder->RecordMaxSize(200'000);
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
    EXPECT_EQ(count_in_log("reached its maximum size"), 1u) << log();
}

TEST_F(Recording, ACodecThatRefusesTheBitrateOrAMissingFolderStartsNothing) {
    auto refused = encoder_for("codec = wma\nbitrate = 20\nfile = c:\\tavora\\x.asf\n", false);
    EXPECT_FALSE(refused->Start());
    EXPECT_GE(count_in_log("wma refuses 20 kb/s at 44100 Hz, 2 channel(s)"), 1u) << log();
    auto away = encoder_for("codec = mp3\nfile = c:\\tavora\\no\\such\\x.asf\n");
    EXPECT_FALSE(away->Start());
    EXPECT_FALSE(away->IsStarted());
}

// /dev/full fails every write as a full disk does: the recording ends with its
// line in the log, and the air it was taking goes on.
TEST_F(Recording, AFullDiskEndsTheRecordingWithALineAndTheAirGoesOn) {
    auto encoder = encoder_for("codec = mp3\nbitrate = 128\nfile = z:\\dev\\full\n");
    ASSERT_TRUE(encoder->Start()) << log();
    render(20);
    EXPECT_FALSE(encoder->IsRecording());
    EXPECT_TRUE(encoder->IsStarted());
    EXPECT_EQ(count_in_log("failed (is the disk full?); the recording ends here, the air goes on"),
              1u)
        << log();
    const double heard = player_->CurrentPosition();
    render(5);
    EXPECT_NEAR(player_->CurrentPosition() - heard, 5.0, 0.1);
    encoder->Stop();
}

// The mixer's side of the hand-over never waits on air: what doesn't fit is counted.
// Offline, where there is no air, it waits for the consumer and loses nothing.
TEST(MixRing, OnAirAFullRingDropsAndCountsOfflineItWaits) {
    constexpr std::size_t kBlock = audio::MixRing::kBlockFrames;
    std::vector<float> block(kBlock * audio::kChannels, 0.25f);
    audio::MixRing live(4, false);
    for (int i = 0; i < 6; ++i)
        live.push(block.data(), kBlock);
    EXPECT_EQ(live.take_dropped(), 2 * static_cast<std::int64_t>(kBlock));
    EXPECT_EQ(live.take_dropped(), 0);

    audio::MixRing offline(4, true);
    std::size_t taken = 0;
    std::thread consumer([&] {
        for (; taken < 20 * kBlock; std::this_thread::yield()) {
            if (auto* b = offline.front()) {
                taken += b->frames;
                offline.release();
            }
        }
    });
    for (int i = 0; i < 20; ++i)
        offline.push(block.data(), kBlock);
    consumer.join();
    EXPECT_EQ(taken, 20 * kBlock);
    EXPECT_EQ(offline.take_dropped(), 0);
}

// Waits on `done` for at most `limit`: a generous limit, as it only counts when
// something is wrong.
bool eventually(const std::function<bool()>& done, std::chrono::seconds limit = 20s) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

// A real-time engine playing a tone on a loop, an encoder on its tap, and a real
// Icecast server on the loopback address.
class Streaming : public Encoding {
  protected:
    Streaming() : Encoding(audio::OutputKind::Null) {}
    void SetUp() override {
        ASSERT_TRUE(server_.start()) << "icecast2 did not start";
        play("tone.flac");
    }
    void TearDown() override {
        if (encoder_) encoder_->Stop();
    }

    void start(const std::string& codec, const std::string& mount,
               const std::string& password = test::IcecastServer::kPassword) {
        encoder_ =
            encoder_for("codec = " + codec +
                        "\nbitrate = 128\nsample_rate = 44100\nfile = c:\\tavora\\s.rec\n"
                        "icecast_host = 127.0.0.1\nicecast_port = " +
                        std::to_string(server_.port()) + "\nicecast_mount = " + mount +
                        "\nicecast_password = " + password + "\nicecast_name = Tavora test\n");
        ASSERT_TRUE(encoder_->Start()) << log();
        EXPECT_TRUE(encoder_->IsNetEnabled());
        EXPECT_EQ(encoder_->IPPort(), server_.port());
        EXPECT_EQ(encoder_->StreamAlias(), mount);
    }
    bool title_shows(const std::string& mount, const std::string& title) {
        return eventually([&] { return TitleOf(server_.status(), mount) == title; });
    }

    test::IcecastServer server_{folder_.path() / "icecast"};
    std::unique_ptr<LiveEncoder> encoder_;
};

TEST_F(Streaming, AListenerHearsTheAirWithItsTitlesAndAServerRestartIsSurvived) {
    titles_.set("First Song - The Band");
    start("mp3", "/tavora.mp3");
    ASSERT_TRUE(title_shows("/tavora.mp3", "First Song - The Band")) << log() << server_.status();

    // A listener for longer than the encoder's poll of the server's listener count.
    auto listener = std::async(std::launch::async,
                               [&] { return test::decode(server_.url("/tavora.mp3"), 8.0); });
    EXPECT_TRUE(eventually([&] { return encoder_->numclients() == 1; })) << log();
    const test::Decoded heard = listener.get();
    ASSERT_TRUE(heard.opened);
    EXPECT_EQ(heard.codec, "mp3");
    EXPECT_GE(heard.seconds, 7.9);
    EXPECT_GT(heard.rms, 0.2);  // the tone at 0.28 RMS, not silence

    titles_.set("Second Song - Other Band");
    EXPECT_TRUE(title_shows("/tavora.mp3", "Second Song - Other Band")) << log();

    server_.stop();
    EXPECT_TRUE(eventually([&] { return count_in_log("lost") == 1; })) << log();
    ASSERT_TRUE(server_.start());
    EXPECT_TRUE(eventually([&] { return count_in_log("stream: connected") == 2; })) << log();
    EXPECT_TRUE(title_shows("/tavora.mp3", "Second Song - Other Band")) << log();
    const test::Decoded again = test::decode(server_.url("/tavora.mp3"), 2.0);
    ASSERT_TRUE(again.opened) << log();
    EXPECT_GE(again.seconds, 1.9);
    EXPECT_GT(again.rms, 0.2);
    EXPECT_TRUE(encoder_->IsRecording());  // the file went on all along
}

TEST_F(Streaming, AnOggStreamCarriesItsTitleInItsOwnComments) {
    titles_.set("Ogg Song - The Band");
    start("vorbis", "/tavora.ogg");
    ASSERT_TRUE(title_shows("/tavora.ogg", "Ogg Song - The Band")) << log() << server_.status();
    const test::Decoded heard = test::decode(server_.url("/tavora.ogg"), 2.0);
    ASSERT_TRUE(heard.opened) << log();
    EXPECT_EQ(heard.codec, "vorbis");
    EXPECT_GT(heard.rms, 0.2);
    titles_.set("Next Song - The Band");
    EXPECT_TRUE(title_shows("/tavora.ogg", "Next Song - The Band")) << log();
}

TEST_F(Streaming, AWrongPasswordIsLoggedAndRetriedWhileTheRecordingGoesOn) {
    start("mp3", "/tavora.mp3", "not-the-password");
    ASSERT_TRUE(eventually([&] { return count_in_log("refused the login") >= 2; })) << log();
    EXPECT_EQ(count_in_log(
                  "stream: attempt 1 to reach http://127.0.0.1:" + std::to_string(server_.port()) +
                  "/tavora.mp3 failed: the server refused the login of user \"source\""),
              1u)
        << log();
    EXPECT_EQ(count_in_log("next attempt in 1 s"), 1u) << log();
    EXPECT_EQ(count_in_log("next attempt in 2 s"), 1u) << log();
    EXPECT_TRUE(encoder_->IsRecording());
    EXPECT_GT(encoder_->RecordSize(), 10'000);
    EXPECT_EQ(ListenersOf(server_.status(), "/tavora.mp3"), -1);  // no such mount
}

// A server that stops answering mid-stream holds up neither the air, nor the
// recording, nor the operator's Stop, whatever call the stream was in.
TEST_F(Streaming, AHungServerHoldsUpNeitherTheRecordingNorTheStop) {
    titles_.set("Before - The Band");
    start("mp3", "/tavora.mp3");
    ASSERT_TRUE(title_shows("/tavora.mp3", "Before - The Band")) << log();

    server_.freeze();
    titles_.set("While Hung - The Band");  // a title update waits on the server's answer
    const std::int64_t size = encoder_->RecordSize();
    EXPECT_TRUE(eventually([&] { return encoder_->RecordSize() > size + 20'000; })) << log();
    EXPECT_TRUE(encoder_->IsRecording());

    // Stop gives up on a hung stream after a couple of seconds; waiting far longer
    // tells a slow machine from a Stop that hangs.
    auto stopped = std::async(std::launch::async, [this] { encoder_->Stop(); });
    EXPECT_EQ(stopped.wait_for(20s), std::future_status::ready) << log();
    server_.thaw();
    stopped.wait();
    EXPECT_FALSE(encoder_->IsStarted());
}

}  // namespace
}  // namespace tavora
