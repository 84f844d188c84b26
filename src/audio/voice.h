#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <variant>

#include "audio/format.h"
#include "audio/spsc_ring.h"

namespace tavora::audio {

inline constexpr std::size_t kBlockFrames = 1024;
inline constexpr std::size_t kRingBlocks = 480;  // about ten seconds decoded ahead

// Decoded audio on its way from a feeder to the mixer. `gen` names the open or seek
// it belongs to, so the mixer can drop what a later seek made stale.
struct Block {
    std::uint32_t gen = 0;
    std::uint32_t frames = 0;
    bool last = false;  // nothing follows in this generation
    std::array<float, kBlockFrames * kChannels> samples{};
};

// What the rule thread asks of the mixer for one player.
namespace command {
struct Load {  // data of generation `gen` starts at file frame `frame`, played at `rate`
    std::uint32_t gen;
    std::int64_t frame;
    double rate;
};
struct Play {
    std::uint32_t serial;
};
struct Pause {};  // ramps down, then holds; Stop and Open send it too, so they never click
struct Gain {
    float gain;
};
struct End {
    std::int64_t frame;  // negative: no selection end
};
}  // namespace command
using Command =
    std::variant<command::Load, command::Play, command::Pause, command::Gain, command::End>;

// The mixer reached the selection end or the end of the data while playing `serial`.
struct Ended {
    std::uint32_t serial;
    std::int64_t frame;
};

// The mixer's side of one player. Threads: send() on the rule thread, mix() on the
// mixer's thread, next_ended() on the one thread that delivers events, the ring's
// producer side on the player's feeder.
class Voice {
  public:
    static constexpr std::size_t kRampFrames = kRate / 200;  // 5 ms for every gain change

    // In offline use `wait` is true: the mixer waits for data instead of playing
    // silence, and calls `wake_producer` so the feeder refills at once.
    Voice(bool wait, std::function<void()> wake_producer);

    // False when the command ring is full and the command was dropped.
    bool send(const Command& command) { return commands_.push(command); }
    SpscRing<Block>& ring() { return ring_; }
    bool next_ended(Ended& out) { return ended_.pop(out); }
    // Ends the mixer could not hand over because nobody took them in time.
    std::uint64_t dropped_ends() const { return dropped_ends_.load(std::memory_order_relaxed); }

    // Packed generation and file frame of the last frame mixed, for lock-free reading.
    static std::uint32_t gen_of(std::uint64_t word) {
        return static_cast<std::uint32_t>(word >> 48);
    }
    static std::int64_t frame_of(std::uint64_t word) {
        return static_cast<std::int64_t>(word & ((std::uint64_t{1} << 48) - 1));
    }
    std::uint64_t position_word() const { return position_.load(std::memory_order_acquire); }

    // Adds this voice's next `frames` frames into `out`.
    void mix(float* out, std::size_t frames);

  private:
    enum class Data { Ready, Missing, Ended };

    void take_commands();
    void apply(const Command& command);
    void load(const command::Load& load);
    bool fading() const { return stopping_ || next_load_.has_value(); }
    bool faded_out() const { return fading() && ramp_target_ == 0.0f && ramp_left_ == 0; }
    void silenced();
    std::int64_t position() const;
    std::int64_t frames_to_end() const;
    Data next_block();
    void finish();
    std::size_t add(const float* in, float* out, std::size_t frames);

    SpscRing<Block> ring_{kRingBlocks};
    SpscRing<Command> commands_{256};
    SpscRing<Ended> ended_{64};
    std::atomic<std::uint64_t> dropped_ends_{0};
    std::atomic<std::uint64_t> position_{0};
    const bool wait_;
    const std::function<void()> wake_producer_;

    // Mixer thread only.
    std::uint32_t gen_ = 0;
    std::int64_t start_frame_ = 0;  // file frame where this generation's data starts
    double rate_ = 1.0;
    std::int64_t consumed_ = 0;  // frames of this generation mixed
    std::int64_t end_frame_ = -1;
    std::uint32_t serial_ = 0;
    bool playing_ = false;   // taking frames from the ring
    bool stopping_ = false;  // a pause ramping down before it holds
    // A seek that came while the voice was audible: the old data ramps down first, and
    // later commands wait behind it.
    std::optional<command::Load> next_load_;
    std::size_t offset_ = 0;  // frames already taken from the front block
    float gain_ = 1.0f;       // what the player asked for
    float level_ = 0.0f;      // where the ramp is now
    float ramp_target_ = 0.0f;
    std::size_t ramp_left_ = 0;  // frames until the level reaches ramp_target_
    float step_ = 0.0f;
};

}  // namespace tavora::audio
