#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace tavora::audio {

// How long the air has been quiet: the bank's voices after their gains, as the
// mixer hands them on. Threads: feed() on the mixer's thread only; the rest from
// any thread, without a lock, so the watchdog never holds the mix up.
class AirMeter {
  public:
    explicit AirMeter(double dbfs = -45.0) { threshold_dbfs(dbfs); }

    // Peak level at or above which a frame counts as sound.
    void threshold_dbfs(double dbfs);

    void feed(const float* frames, std::size_t count);

    // Seconds of mix since the last sound; all of it when nothing has sounded yet.
    double quiet_seconds() const;

  private:
    std::atomic<float> threshold_;
    std::atomic<std::int64_t> mixed_{0};       // frames fed so far
    std::atomic<std::int64_t> loud_until_{0};  // end of the latest block with sound
};

}  // namespace tavora::audio
