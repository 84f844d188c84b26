#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "broadcast/profile.h"

namespace tavora {

using EncoderLog = std::function<void(const std::string& line)>;

// A source connection to an Icecast server on a thread of its own. The encoder hands
// it bytes and never waits: while the server is away they are dropped, and it
// reconnects with a backoff from 1 s doubling to 60 s, logging each attempt. A new
// connection asks the encoder for a fresh stream header (`take_restart`).
class IcecastSource : public std::enable_shared_from_this<IcecastSource> {
  public:
    static constexpr int kFirstBackoffMs = 1000;
    static constexpr int kLastBackoffMs = 60000;

    // The thread holds the source too, so that `close` can leave it to finish a
    // call that a hung server never answers.
    static std::shared_ptr<IcecastSource> start(StreamTarget target, std::string format,
                                                const Profile& profile, EncoderLog log);
    ~IcecastSource();
    IcecastSource(const IcecastSource&) = delete;
    IcecastSource& operator=(const IcecastSource&) = delete;

    // Ends the connection, waiting at most a moment. Nothing is logged after it.
    void close();

    // Encoder side.
    void send(const std::uint8_t* data, std::size_t size);
    // True once after each new connection; the encoder then calls `restarted` and
    // writes a new header.
    bool take_restart() { return restart_wanted_.exchange(false); }
    void restarted();
    // The title for the server's status; sent out of band for MP3.
    void set_title(const std::string& title);

    int listeners() const { return listeners_.load(); }

  private:
    IcecastSource(StreamTarget target, std::string format, const Profile& profile, EncoderLog log);
    void run();
    void say(const std::string& line);
    bool connect_once(int attempt);
    void send_title();
    void poll_listeners();
    void wait_ms(int ms);
    std::string address() const;

    StreamTarget target_;
    std::string format_;
    std::string bitrate_, rate_, channels_;
    EncoderLog log_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::vector<std::uint8_t>> queue_;
    std::size_t queued_bytes_ = 0;
    bool accepting_ = false;  // false from a new connection until the encoder restarted
    std::string title_, sent_title_;
    bool quit_ = false;
    bool done_ = false;  // the thread has left `run`

    std::atomic<bool> restart_wanted_{false};
    std::atomic<int> listeners_{0};
    void* shout_ = nullptr;  // the connection, owned by the thread
    std::thread thread_;
};

}  // namespace tavora
