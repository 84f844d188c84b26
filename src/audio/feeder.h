#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "audio/decoder.h"
#include "audio/tempo.h"
#include "audio/voice.h"

namespace tavora::audio {

// Decodes ahead for one player, on a thread of its own, into its voice's ring. The rule
// thread queues opens and seeks; the mixer never touches the lock here.
class Feeder {
  public:
    struct Opened {
        std::uint32_t gen;
        OpenResult result;
        std::int64_t length;  // frames, 0 when unknown
    };
    // Called on the feeder's thread when an open has finished, before wait_opened() returns.
    using OnOpened = std::function<void(const Opened&)>;

    Feeder(SpscRing<Block>& ring, OnOpened on_opened);
    ~Feeder();
    Feeder(const Feeder&) = delete;
    Feeder& operator=(const Feeder&) = delete;

    void open(std::uint32_t gen, std::string url);  // cancels an open still running
    void seek(std::uint32_t gen, std::int64_t frame, double rate);
    void wake() { changed_.notify_one(); }
    void wait_opened();  // until no open is queued or running

  private:
    struct Request {
        bool open = false;
        std::uint32_t gen = 0;
        std::string url;
        std::int64_t frame = 0;
        double rate = 1.0;
    };

    void run();
    void handle(const Request& request);
    void produce();
    void end_generation();
    void hand_over(bool last);  // publishes, waking a waiting mixer when worth it

    SpscRing<Block>& ring_;
    OnOpened on_opened_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::condition_variable idle_;
    std::deque<Request> queue_;  // guarded by mutex_
    bool opening_ = false;       // guarded by mutex_
    bool quit_ = false;          // guarded by mutex_
    std::atomic<bool> abort_{false};

    // Feeder thread only.
    Decoder decoder_;
    Tempo tempo_;
    std::uint32_t gen_ = 0;
    bool producing_ = false;
    bool input_done_ = false;
    std::size_t refill_at_ = 1;  // free blocks wanted before decoding again
    std::vector<float> decoded_;
    std::vector<float> staged_;  // decoded (and tempo-changed) frames not yet in a block
    std::size_t staged_read_ = 0;

    std::thread thread_;  // last: starts when everything above is ready
};

}  // namespace tavora::audio
