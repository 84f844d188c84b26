#pragma once

#include <cmath>
#include <cstdint>

namespace tavora::audio {

// The engine's one internal format: 48 kHz, interleaved stereo float.
inline constexpr int kRate = 48000;
inline constexpr int kChannels = 2;

// Volume is in hundredths of a decibel; -2000 and below is silence, and above 0 is
// held at full level.
inline float gain_of_volume(int volume) {
    if (volume <= -2000) return 0.0f;
    if (volume >= 0) return 1.0f;
    return static_cast<float>(std::pow(10.0, volume / 2000.0));
}

inline double seconds_of_frames(std::int64_t frames) {
    return static_cast<double>(frames) / kRate;
}
inline std::int64_t frames_of_seconds(double seconds) {
    return static_cast<std::int64_t>(std::llround(seconds * kRate));
}

}  // namespace tavora::audio
