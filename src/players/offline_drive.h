#pragma once

#include <vector>

#include "audio/engine.h"
#include "platform/clock.h"

namespace tavora {

// Keeps an offline engine in step with virtual time: whenever the clock moves
// on, every pending open is finished first and then exactly that much audio
// is mixed, so a simulated day renders real audio whose mix points can be
// measured. Removes its hook when destroyed.
class OfflineDrive {
  public:
    OfflineDrive(VirtualClock& clock, audio::Engine& engine);
    ~OfflineDrive();
    OfflineDrive(const OfflineDrive&) = delete;
    OfflineDrive& operator=(const OfflineDrive&) = delete;

    std::int64_t frames_rendered() const { return frames_; }

  private:
    void advance(std::int64_t from_ms, std::int64_t to_ms);

    VirtualClock& clock_;
    audio::Engine& engine_;
    std::vector<float> buffer_;
    std::int64_t frames_ = 0;
};

}  // namespace tavora
