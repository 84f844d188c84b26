#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "offline_station.h"

namespace tavora::audio {
namespace {

using test::OfflineStation;

// Serves one file on 127.0.0.1, with or without its length, byte ranges included, and
// a 404 for any other path. Bounded: a few connections, a few seconds, then it stops.
class TinyServer {
  public:
    TinyServer(const std::string& file, bool tell_length) : tell_length_(tell_length) {
        std::ifstream in(file, std::ios::binary);
        body_.assign(std::istreambuf_iterator<char>(in), {});
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
        thread_ = std::thread([this] { run(); });
    }
    ~TinyServer() {
        stop_ = true;
        thread_.join();
        for (auto& t : connections_)
            t.join();
        close(listener_);
    }
    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(port_) + path;
    }

  private:
    void run() {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!stop_ && connections_.size() < 16 && std::chrono::steady_clock::now() < deadline) {
            pollfd wait{listener_, POLLIN, 0};
            if (poll(&wait, 1, 100) <= 0) continue;
            const int client = accept(listener_, nullptr, nullptr);
            if (client >= 0) connections_.emplace_back([this, client] { serve(client); });
        }
    }

    void serve(int client) {
        std::string request;
        char buffer[2048];
        while (request.find("\r\n\r\n") == std::string::npos && request.size() < 16384) {
            pollfd wait{client, POLLIN, 0};
            if (poll(&wait, 1, 2000) <= 0) break;
            const ssize_t got = recv(client, buffer, sizeof buffer, 0);
            if (got <= 0) break;
            request.append(buffer, static_cast<std::size_t>(got));
        }
        std::string head;
        std::size_t from = 0;
        if (request.rfind("GET /sound", 0) != 0) {
            head = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
        } else if (!tell_length_) {
            head = "HTTP/1.0 200 OK\r\nContent-Type: application/octet-stream\r\n\r\n";
        } else {
            const std::size_t range = request.find("Range: bytes=");
            if (range != std::string::npos) from = std::stoul(request.substr(range + 13));
            from = std::min(from, body_.size());
            const std::string length = std::to_string(body_.size() - from);
            head = range == std::string::npos
                       ? "HTTP/1.1 200 OK\r\n"
                       : "HTTP/1.1 206 Partial Content\r\nContent-Range: bytes " +
                             std::to_string(from) + "-" + std::to_string(body_.size() - 1) + "/" +
                             std::to_string(body_.size()) + "\r\n";
            head += "Accept-Ranges: bytes\r\nContent-Length: " + length +
                    "\r\nConnection: close\r\n\r\n";
        }
        std::string reply = head;
        if (head.find(" 404 ") == std::string::npos) reply.append(body_, from);
        for (std::size_t sent = 0; sent < reply.size() && !stop_;) {
            const ssize_t n = send(client, reply.data() + sent, reply.size() - sent, MSG_NOSIGNAL);
            if (n <= 0) break;
            sent += static_cast<std::size_t>(n);
        }
        close(client);
    }

    bool tell_length_;
    std::string body_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<bool> stop_{false};
    std::vector<std::thread> connections_;  // only the server's thread touches it
    std::thread thread_;
};

// Plays to the end; returns the seconds of output it took.
double play_out(OfflineStation& station, Player& player) {
    player.play();
    std::size_t rendered = 0;
    while (player.PlayState() == Player::kPlaying && rendered < std::size_t{10 * kRate}) {
        station.render(kRate / 20);
        rendered += kRate / 20;
    }
    return static_cast<double>(rendered) / kRate;
}

TEST(Http, AFileWithItsLengthOpensAndPlaysThrough) {
    TinyServer server(test::media("tone.mp3"), true);
    OfflineStation station;
    auto player = station.open_at(server.url("/sound.mp3"));
    ASSERT_EQ(player->ReadyState(), Player::kReady) << player->ErrorDescription();
    EXPECT_NEAR(player->Duration(), 3.0, 0.1);
    EXPECT_NEAR(play_out(station, *player), 3.0, 0.1);
}

TEST(Http, AStreamOfUnknownLengthHasNoDurationAndPlaysUntilItEnds) {
    TinyServer server(test::media("tone.ogg"), false);
    OfflineStation station;
    auto player = station.open_at(server.url("/sound.ogg"));
    ASSERT_EQ(player->ReadyState(), Player::kReady) << player->ErrorDescription();
    EXPECT_EQ(player->Duration(), 0.0);
    EXPECT_NEAR(play_out(station, *player), 3.0, 0.1);
}

TEST(Http, AUrlThatFailsRaisesTheError) {
    TinyServer server(test::media("tone.mp3"), true);
    OfflineStation station;
    auto player = station.engine().add_player();
    int errors = 0;
    player->Error = [&errors] { ++errors; };
    player->Open(server.url("/missing.mp3"));
    station.engine().settle();
    station.run_events();
    EXPECT_EQ(errors, 1);  // told once, through the event
    EXPECT_NE(player->ErrorDescription().find("/missing.mp3"), std::string::npos);
    EXPECT_EQ(player->PlayState(), Player::kClosed);
}

}  // namespace
}  // namespace tavora::audio
