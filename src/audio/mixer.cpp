#include "audio/mixer.h"

#include <algorithm>

#include "audio/format.h"

namespace tavora::audio {

template <typename T, std::size_t N>
bool Mixer::publish(std::array<std::atomic<T*>, N>& slots, std::atomic<std::size_t>& count,
                    T* item) {
    const std::size_t n = count.load(std::memory_order_relaxed);
    if (n >= N) return false;
    slots[n].store(item, std::memory_order_release);
    count.store(n + 1, std::memory_order_release);
    return true;
}

bool Mixer::add_voice(Voice* voice, bool metered) {
    const std::size_t n = voice_count_.load(std::memory_order_relaxed);
    if (n < kMaxVoices) metered_[n] = metered;
    return publish(voices_, voice_count_, voice);
}
bool Mixer::add_tap(const Tap* tap) {
    return publish(taps_, tap_count_, tap);
}

void Mixer::mix(float* out, std::size_t frames) {
    std::fill(out, out + frames * kChannels, 0.0f);
    const std::size_t voices = voice_count_.load(std::memory_order_acquire);
    for (std::size_t i = 0; i < voices; ++i)
        if (metered_[i]) voices_[i].load(std::memory_order_acquire)->mix(out, frames);
    if (meter_) meter_->feed(out, frames);
    for (std::size_t i = 0; i < voices; ++i)
        if (!metered_[i]) voices_[i].load(std::memory_order_acquire)->mix(out, frames);
    const std::size_t taps = tap_count_.load(std::memory_order_acquire);
    for (std::size_t i = 0; i < taps; ++i) {
        (*taps_[i].load(std::memory_order_acquire))(out, frames);
    }
}

}  // namespace tavora::audio
