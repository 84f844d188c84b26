#include "players/offline_drive.h"

#include <algorithm>

#include "audio/format.h"

namespace tavora {

namespace {
constexpr std::int64_t kFramesPerMs = audio::kRate / 1000;
constexpr std::int64_t kBlock = 4096;  // frames mixed per call
}  // namespace

OfflineDrive::OfflineDrive(VirtualClock& clock, audio::Engine& engine)
    : clock_(clock), engine_(engine), buffer_(kBlock * audio::kChannels) {
    clock_.SetAdvanceHook([this](std::int64_t from, std::int64_t to) { advance(from, to); });
}

OfflineDrive::~OfflineDrive() {
    clock_.SetAdvanceHook({});
}

void OfflineDrive::advance(std::int64_t from_ms, std::int64_t to_ms) {
    engine_.settle();
    for (std::int64_t left = (to_ms - from_ms) * kFramesPerMs; left > 0;) {
        const std::int64_t frames = std::min(left, kBlock);
        engine_.render(buffer_.data(), static_cast<std::size_t>(frames));
        frames_ += frames;
        left -= frames;
    }
}

}  // namespace tavora
