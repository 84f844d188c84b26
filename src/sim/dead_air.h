#pragma once

#include <cstddef>
#include <cstdint>

namespace tavora {

// Adds up the stretches of silence that last at least `min_seconds`,
// counting from the first sound: the quiet before the station first plays
// is start-up, not dead air.
class DeadAir {
  public:
    explicit DeadAir(double min_seconds = 2.0) : min_seconds_(min_seconds) {}

    // Silence begins or ends at a moment, in seconds on any steady scale.
    void quiet_from(double at);
    void sound_from(double at);
    // Closes a stretch still open at the end of the run.
    void finish(double at);

    double total_seconds() const { return total_; }
    double longest_seconds() const { return longest_; }

  private:
    double min_seconds_;
    bool heard_ = false;
    bool quiet_ = false;
    double quiet_since_ = 0;
    double total_ = 0;
    double longest_ = 0;
};

// Listens to the mix itself: a stretch of 10 ms in which every sample stays
// below -50 dBFS is quiet.
class MixLevelMeter {
  public:
    MixLevelMeter(DeadAir& dead_air, int rate) : dead_air_(dead_air), rate_(rate) {}

    // Interleaved stereo frames, in order, from the start of the mix.
    void feed(const float* frames, std::size_t count);
    double seconds() const { return static_cast<double>(frames_) / rate_; }

  private:
    void end_window();

    DeadAir& dead_air_;
    int rate_;
    std::int64_t frames_ = 0;
    std::int64_t window_start_ = 0;
    bool window_loud_ = false;
};

}  // namespace tavora
