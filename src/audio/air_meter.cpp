#include "audio/air_meter.h"

#include <algorithm>
#include <cmath>

#include "audio/format.h"

namespace tavora::audio {

void AirMeter::threshold_dbfs(double dbfs) {
    threshold_.store(static_cast<float>(std::pow(10.0, dbfs / 20.0)), std::memory_order_relaxed);
}

void AirMeter::feed(const float* frames, std::size_t count) {
    // From the block's end back to its last sound: music stops within a few
    // samples, so the meter costs far less than the mix it listens to.
    const float threshold = threshold_.load(std::memory_order_relaxed);
    const std::int64_t start = mixed_.load(std::memory_order_relaxed);
    for (std::size_t i = count * kChannels; i-- > 0;) {
        if (std::fabs(frames[i]) >= threshold) {
            loud_until_.store(start + static_cast<std::int64_t>(i / kChannels) + 1,
                              std::memory_order_relaxed);
            break;
        }
    }
    mixed_.store(start + static_cast<std::int64_t>(count), std::memory_order_release);
}

double AirMeter::quiet_seconds() const {
    const std::int64_t mixed = mixed_.load(std::memory_order_acquire);
    // A block newer than `mixed` may already have marked itself loud.
    return seconds_of_frames(
        std::max<std::int64_t>(mixed - loud_until_.load(std::memory_order_relaxed), 0));
}

}  // namespace tavora::audio
