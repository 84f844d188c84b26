#include "audio/air_meter.h"

#include <algorithm>
#include <cmath>

#include "audio/format.h"

namespace tavora::audio {

void AirMeter::threshold_dbfs(double dbfs) {
    threshold_.store(static_cast<float>(std::pow(10.0, dbfs / 20.0)), std::memory_order_relaxed);
}

namespace {

constexpr std::size_t kStride = 64;  // samples tested in one vectorised pass
// One stretch in four is tested: a sound shorter than three stretches (4 ms)
// is no air, and silence, the meter's dearest case, costs a quarter.
constexpr std::size_t kTestEvery = 4 * kStride;

// A comparison and an OR per sample: a loop the compiler vectorises, where
// a float max would be kept scalar for the sake of NaN.
bool any_loud(const float* samples, std::size_t count, float threshold) {
    int loud = 0;
    for (std::size_t i = 0; i < count; ++i)
        loud |= std::fabs(samples[i]) >= threshold;
    return loud != 0;
}

}  // namespace

void AirMeter::feed(const float* frames, std::size_t count) {
    // Stretches from the block's end back to its last sound: music stops at
    // the first stretch.
    const float threshold = threshold_.load(std::memory_order_relaxed);
    const std::int64_t start = mixed_.load(std::memory_order_relaxed);
    for (std::size_t end = count * kChannels; end > 0;) {
        const std::size_t begin = end > kStride ? end - kStride : 0;
        const std::size_t next = end > kTestEvery ? end - kTestEvery : 0;
        if (any_loud(frames + begin, end - begin, threshold)) {
            std::size_t i = end;
            while (std::fabs(frames[--i]) < threshold) {
            }
            loud_until_.store(start + static_cast<std::int64_t>(i / kChannels) + 1,
                              std::memory_order_relaxed);
            break;
        }
        end = next;
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
