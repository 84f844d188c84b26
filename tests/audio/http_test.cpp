#include <httplib.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "offline_station.h"

namespace tavora::audio {
namespace {

using test::OfflineStation;

// Serves one file on 127.0.0.1 to every request, with its length or as a chunked
// stream of unknown length, until it is destroyed.
class TinyServer {
  public:
    TinyServer(const std::string& file, bool tell_length) : body_(test::file_bytes(file)) {
        server_.Get(".*", [this, tell_length](const httplib::Request&, httplib::Response& reply) {
            if (tell_length) {
                reply.set_content(body_, "application/octet-stream");
                return;
            }
            reply.set_chunked_content_provider("application/octet-stream",
                                               [this](std::size_t, httplib::DataSink& sink) {
                                                   sink.write(body_.data(), body_.size());
                                                   sink.done();
                                                   return true;
                                               });
        });
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
    }
    ~TinyServer() {
        server_.stop();
        thread_.join();
    }
    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(port_) + path;
    }

  private:
    std::string body_;
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};

// With its length a file tells its duration; a stream of unknown length has none. Both
// play until they end, and a URL that fails says which it was.
TEST(Http, FilesAndStreamsPlayThroughAndAFailureIsNamed) {
    for (const auto& [file, tell_length] : {std::pair{"tone.mp3", true}, {"tone.ogg", false}}) {
        TinyServer server(test::media(file), tell_length);
        OfflineStation station;
        auto player =
            station.open_at(server.url(std::string("/sound.") + (tell_length ? "mp3" : "ogg")));
        ASSERT_EQ(player->ReadyState(), Player::kReady) << player->ErrorDescription();
        EXPECT_NEAR(player->Duration(), tell_length ? 3.0 : 0.0, tell_length ? 0.1 : 0.0);
        EXPECT_NEAR(station.play_out(*player, 10), 3.0, 0.1) << file;
    }
    OfflineStation station;
    auto failed = station.open_at("http://127.0.0.1:1/missing.mp3");  // nothing listens there
    EXPECT_NE(failed->ErrorDescription().find("/missing.mp3"), std::string::npos);
    EXPECT_EQ(failed->PlayState(), Player::kClosed);
}

}  // namespace
}  // namespace tavora::audio
