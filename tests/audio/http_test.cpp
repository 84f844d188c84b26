#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include "offline_station.h"

namespace tavora::audio {
namespace {

using test::OfflineStation;

// Serves one file on 127.0.0.1 to each connection in turn, with or without its length,
// until it is destroyed.
class TinyServer {
  public:
    TinyServer(const std::string& file, bool tell_length) {
        std::ifstream in(file, std::ios::binary);
        const std::string body(std::istreambuf_iterator<char>(in), {});
        reply_ = tell_length ? "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) +
                                   "\r\nConnection: close\r\n\r\n"
                             : "HTTP/1.0 200 OK\r\n\r\n";
        reply_ += body;
        listener_ = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (bind(listener_, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
            listen(listener_, 8) == 0 &&
            getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) == 0) {
            port_ = ntohs(address.sin_port);
        }
        thread_ = std::thread([this] {
            while (!stop_) {
                pollfd wait{listener_, POLLIN, 0};
                if (poll(&wait, 1, 100) <= 0) continue;
                const int client = accept(listener_, nullptr, nullptr);
                if (client < 0) continue;
                char request[4096];
                if (recv(client, request, sizeof request, 0) > 0)
                    send(client, reply_.data(), reply_.size(), MSG_NOSIGNAL);
                close(client);
            }
        });
    }
    ~TinyServer() {
        stop_ = true;
        thread_.join();
        close(listener_);
    }
    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(port_) + path;
    }

  private:
    std::string reply_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<bool> stop_{false};
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
