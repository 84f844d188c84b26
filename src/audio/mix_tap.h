#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "audio/format.h"
#include "audio/spsc_ring.h"

namespace tavora::audio {

class Engine;

// A hand-over of the mix from the mixer's thread to one consumer thread (the recorder,
// the stream). The mixer never waits: when the consumer falls behind, the blocks that
// don't fit are dropped and counted. Only an offline engine, which has no air to keep,
// may be told to wait for room so that a rendered hour gives a whole file.
class MixRing {
  public:
    static constexpr std::size_t kBlockFrames = 1024;
    struct Block {
        std::array<float, kBlockFrames * kChannels> samples{};
        std::size_t frames = 0;
    };

    MixRing(std::size_t blocks, bool wait_when_full);

    // Mixer side.
    void push(const float* frames, std::size_t count);
    // Consumer side: the oldest block, or null when none is waiting.
    Block* front() { return ring_.front(); }
    void release() { ring_.release(); }

    // Frames dropped since the last call; the consumer reports them.
    std::int64_t take_dropped() { return dropped_.exchange(0); }
    // Ends any wait of the producer, for good.
    void close() { closed_.store(true); }

  private:
    Block* reserve();

    SpscRing<Block> ring_;
    bool wait_when_full_;
    Block* filling_ = nullptr;  // mixer thread only
    std::atomic<std::int64_t> dropped_{0};
    std::atomic<bool> closed_{false};
};

// One tap on an engine to which a ring can be attached and detached at any time. The
// tap lives as long as the engine; the ring only while attached.
class MixTap {
  public:
    explicit MixTap(Engine& engine);
    ~MixTap();
    MixTap(const MixTap&) = delete;
    MixTap& operator=(const MixTap&) = delete;

    bool offline() const { return offline_; }
    // One ring at a time; attach replaces none, detach waits only for a mix block
    // already inside push (the mixer never waits for us).
    void attach(MixRing* ring);
    void detach();

  private:
    struct Shared {
        std::atomic<MixRing*> ring{nullptr};
        std::atomic<int> pushing{0};
    };
    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
    bool offline_;
};

}  // namespace tavora::audio
