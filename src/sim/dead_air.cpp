#include "sim/dead_air.h"

#include <algorithm>
#include <cmath>

namespace tavora {

void DeadAir::quiet_from(double at) {
    if (!heard_ || quiet_) return;
    quiet_ = true;
    quiet_since_ = at;
}

void DeadAir::sound_from(double at) {
    heard_ = true;
    if (!quiet_) return;
    quiet_ = false;
    const double stretch = at - quiet_since_;
    if (stretch < min_seconds_) return;
    total_ += stretch;
    longest_ = std::max(longest_, stretch);
}

void DeadAir::finish(double at) {
    if (quiet_) sound_from(at);
}

namespace {

const float kQuiet = static_cast<float>(std::pow(10.0, -50.0 / 20.0));

}  // namespace

void MixLevelMeter::feed(const float* frames, std::size_t count) {
    const std::int64_t window = rate_ / 100;
    for (std::size_t i = 0; i < count; ++i) {
        if (std::fabs(frames[2 * i]) >= kQuiet || std::fabs(frames[2 * i + 1]) >= kQuiet) {
            window_loud_ = true;
        }
        if (++frames_ - window_start_ >= window) end_window();
    }
}

void MixLevelMeter::end_window() {
    const double start = static_cast<double>(window_start_) / rate_;
    if (window_loud_)
        dead_air_.sound_from(start);
    else
        dead_air_.quiet_from(start);
    window_start_ = frames_;
    window_loud_ = false;
}

}  // namespace tavora
