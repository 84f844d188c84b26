#include <gtest/gtest.h>

#include <chrono>
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

bool eventually(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

// A real-time engine playing a tone on a loop, an encoder on its tap, and a real
// Icecast server on the loopback address.
class Streaming : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(server_.start()) << "icecast2 did not start";
        std::filesystem::create_directories(folder_.path() / "tavora");
        player_ = station_.open("tone.flac");
        player_->play();
    }
    void TearDown() override {
        if (encoder_) encoder_->Stop();
    }

    void start(const std::string& codec, const std::string& mount,
               const std::string& password = test::IcecastServer::kPassword) {
        const auto profile = folder_.Write(
            "tavora/stream.asd",
            "codec = " + codec +
                "\nbitrate = 128\nsample_rate = 44100\nfile = c:\\tavora\\s.rec\n"
                "icecast_host = 127.0.0.1\nicecast_port = " +
                std::to_string(server_.port()) + "\nicecast_mount = " + mount +
                "\nicecast_password = " + password + "\nicecast_name = Tavora test\n");
        encoder_ =
            std::make_unique<LiveEncoder>(tap_, paths_, titles_, [this](const std::string& l) {
                std::lock_guard lock(mutex_);
                log_ += l + "\n";
            });
        ASSERT_TRUE(encoder_->LoadASD(profile.string()));
        ASSERT_TRUE(encoder_->Start()) << log();
        EXPECT_TRUE(encoder_->IsNetEnabled());
        EXPECT_EQ(encoder_->IPPort(), server_.port());
        EXPECT_EQ(encoder_->StreamAlias(), mount);
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
    bool title_shows(const std::string& mount, const std::string& title) {
        return eventually([&] { return TitleOf(server_.status(), mount) == title; }, 5s);
    }

    TestFolder folder_;
    test::IcecastServer server_{folder_.path() / "icecast"};
    PathMap paths_{folder_.path() / "tavora"};
    audio::test::OfflineStation station_{audio::OutputKind::Null};
    audio::MixTap tap_{station_.engine()};
    AirTitle titles_;
    std::shared_ptr<audio::Player> player_;
    std::unique_ptr<LiveEncoder> encoder_;
    std::mutex mutex_;
    std::string log_;
};

TEST_F(Streaming, AListenerHearsTheAirWithItsTitlesAndAServerRestartIsSurvived) {
    titles_.set("First Song - The Band");
    start("mp3", "/tavora.mp3");
    ASSERT_TRUE(title_shows("/tavora.mp3", "First Song - The Band")) << log() << server_.status();

    // A listener for six seconds; the server's count of it reaches numclients.
    auto listener = std::async(std::launch::async,
                               [&] { return test::decode(server_.url("/tavora.mp3"), 6.0); });
    EXPECT_TRUE(eventually([&] { return encoder_->numclients() == 1; }, 8s)) << log();
    const test::Decoded heard = listener.get();
    ASSERT_TRUE(heard.opened);
    EXPECT_EQ(heard.codec, "mp3");
    EXPECT_GE(heard.seconds, 5.9);
    EXPECT_GT(heard.rms, 0.2);  // the tone at 0.28 RMS, not silence

    titles_.set("Second Song - Other Band");
    EXPECT_TRUE(title_shows("/tavora.mp3", "Second Song - Other Band")) << log();

    server_.stop();
    EXPECT_TRUE(eventually([&] { return count_in_log("lost") == 1; }, 5s)) << log();
    ASSERT_TRUE(server_.start());
    EXPECT_TRUE(eventually([&] { return count_in_log("stream: connected") == 2; }, 10s)) << log();
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
    ASSERT_TRUE(eventually([&] { return count_in_log("refused the login") >= 2; }, 8s)) << log();
    const std::string text = log();
    EXPECT_NE(
        text.find("stream: attempt 1 to reach http://127.0.0.1:" + std::to_string(server_.port()) +
                  "/tavora.mp3 failed: the server refused the login of user \"source\""),
        std::string::npos)
        << text;
    EXPECT_NE(text.find("next attempt in 1 s"), std::string::npos) << text;
    EXPECT_NE(text.find("next attempt in 2 s"), std::string::npos) << text;
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
    EXPECT_TRUE(eventually([&] { return encoder_->RecordSize() > size + 20'000; }, 5s)) << log();
    EXPECT_TRUE(encoder_->IsRecording());

    auto stopped = std::async(std::launch::async, [this] { encoder_->Stop(); });
    EXPECT_EQ(stopped.wait_for(5s), std::future_status::ready) << log();
    server_.thaw();
    stopped.wait();
    EXPECT_FALSE(encoder_->IsStarted());
}

}  // namespace
}  // namespace tavora
