#include "audio/mix_tap.h"

#include <algorithm>
#include <cstring>
#include <thread>

#include "audio/engine.h"

namespace tavora::audio {

MixRing::MixRing(std::size_t blocks, bool wait_when_full)
    : ring_(blocks), wait_when_full_(wait_when_full) {}

MixRing::Block* MixRing::reserve() {
    Block* block = ring_.reserve();
    while (block == nullptr && wait_when_full_ && !closed_.load()) {
        std::this_thread::yield();
        block = ring_.reserve();
    }
    if (block) block->frames = 0;
    return block;
}

void MixRing::push(const float* frames, std::size_t count) {
    while (count > 0) {
        if (filling_ == nullptr) filling_ = reserve();
        if (filling_ == nullptr) {
            dropped_.fetch_add(static_cast<std::int64_t>(count), std::memory_order_relaxed);
            return;
        }
        const std::size_t take = std::min(count, kBlockFrames - filling_->frames);
        std::memcpy(filling_->samples.data() + filling_->frames * kChannels, frames,
                    take * kChannels * sizeof(float));
        filling_->frames += take;
        frames += take * kChannels;
        count -= take;
        if (filling_->frames == kBlockFrames) {
            ring_.publish();
            filling_ = nullptr;
        }
    }
}

MixTap::MixTap(Engine& engine) : offline_(engine.output() == OutputKind::Offline) {
    engine.add_tap([shared = shared_](const float* frames, std::size_t count) {
        shared->pushing.fetch_add(1);
        if (MixRing* ring = shared->ring.load()) ring->push(frames, count);
        shared->pushing.fetch_sub(1);
    });
}

MixTap::~MixTap() {
    detach();
}

void MixTap::attach(MixRing* ring) {
    shared_->ring.store(ring);
}

void MixTap::detach() {
    MixRing* ring = shared_->ring.exchange(nullptr);
    if (ring) ring->close();
    while (shared_->pushing.load() != 0)
        std::this_thread::yield();
}

}  // namespace tavora::audio
