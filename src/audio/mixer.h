#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>

#include "audio/air_meter.h"
#include "audio/voice.h"

namespace tavora::audio {

// Receives every mixed block, on the mixer's thread: it must not block or take long.
using Tap = std::function<void(const float* frames, std::size_t count)>;

// Sums the voices and hands the mix to the taps. The air meter hears the voices on the
// air's meter, summed before the others are added. mix() runs on the output's thread
// (the sound card callback, the null output's thread, or the offline caller); voices
// and taps are added from the rule thread and stay until the mixer is gone.
class Mixer {
  public:
    static constexpr std::size_t kMaxVoices = 32;
    static constexpr std::size_t kMaxTaps = 8;

    explicit Mixer(AirMeter* meter = nullptr) : meter_(meter) {}

    // `metered`: the air meter hears this voice (the bank's players do, the
    // watchdog's own fallback player doesn't).
    bool add_voice(Voice* voice, bool metered = true);
    bool add_tap(const Tap* tap);
    void mix(float* out, std::size_t frames);

  private:
    template <typename T, std::size_t N>
    static bool publish(std::array<std::atomic<T*>, N>& slots, std::atomic<std::size_t>& count,
                        T* item);

    AirMeter* meter_;
    std::array<std::atomic<Voice*>, kMaxVoices> voices_{};
    std::array<bool, kMaxVoices> metered_{};  // written before the voice is published
    std::atomic<std::size_t> voice_count_{0};
    std::array<std::atomic<const Tap*>, kMaxTaps> taps_{};
    std::atomic<std::size_t> tap_count_{0};
};

}  // namespace tavora::audio
