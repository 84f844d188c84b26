#include "audio/voice.h"

#include <algorithm>
#include <cmath>

namespace tavora::audio {
namespace {

bool is_newer(std::uint32_t gen, std::uint32_t than) {
    return static_cast<std::int32_t>(gen - than) > 0;
}

}  // namespace

Voice::Voice(bool wait, std::function<void()> wake_producer)
    : wait_(wait), wake_producer_(std::move(wake_producer)) {}

void Voice::take_commands() {
    Command command;
    while (!next_load_ && commands_.pop(command))
        apply(command);
}

void Voice::apply(const Command& command) {
    std::visit(
        [this](const auto& c) {
            using C = std::decay_t<decltype(c)>;
            if constexpr (std::is_same_v<C, command::Load>) {
                if (playing_ && level_ > 0.0f) {
                    next_load_ = c;
                } else {
                    load(c);
                }
            } else if constexpr (std::is_same_v<C, command::Play>) {
                serial_ = c.serial;
                playing_ = true;
                stopping_ = false;
            } else if constexpr (std::is_same_v<C, command::Pause>) {
                if (playing_) stopping_ = true;
            } else if constexpr (std::is_same_v<C, command::Gain>) {
                gain_ = c.gain;
            } else if constexpr (std::is_same_v<C, command::End>) {
                end_frame_ = c.frame;
            }
        },
        command);
}

void Voice::load(const command::Load& load) {
    gen_ = load.gen;
    start_frame_ = load.frame;
    rate_ = load.rate;
    consumed_ = 0;
    offset_ = 0;
    level_ = 0.0f;  // the new data ramps in from silence
    ramp_target_ = -1.0f;
}

// The ramp down has reached silence (or the old data ran out under it): a pause holds,
// a waiting seek jumps, and the commands queued behind it follow.
void Voice::silenced() {
    level_ = 0.0f;
    if (stopping_) playing_ = stopping_ = false;
    if (next_load_) {
        load(*next_load_);
        next_load_.reset();
        take_commands();
    }
}

std::int64_t Voice::position() const {
    if (rate_ == 1.0) return start_frame_ + consumed_;
    return start_frame_ + static_cast<std::int64_t>(static_cast<double>(consumed_) * rate_);
}

std::int64_t Voice::frames_to_end() const {
    if (end_frame_ < 0) return -1;
    const double span = static_cast<double>(end_frame_ - start_frame_) / rate_;
    return std::max<std::int64_t>(static_cast<std::int64_t>(std::ceil(span)) - consumed_, 0);
}

// Brings a block of the current generation with frames left to the front of the ring.
Voice::Data Voice::next_block() {
    for (;;) {
        Block* block = ring_.front();
        if (block == nullptr) {
            if (!wait_) return Data::Missing;  // real time: an underrun plays silence
            const std::size_t seen = ring_.published();
            if (ring_.front() != nullptr) continue;
            wake_producer_();
            ring_.wait_for_publish(seen);
            continue;
        }
        if (block->gen != gen_) {
            if (is_newer(block->gen, gen_)) return Data::Missing;  // its Load is on the way
            ring_.release();
            offset_ = 0;
            continue;
        }
        if (offset_ < block->frames) return Data::Ready;
        if (block->last) return Data::Ended;  // kept at the front: playing again ends at once
        ring_.release();
        offset_ = 0;
    }
}

void Voice::finish() {
    playing_ = stopping_ = false;
    level_ = 0.0f;
    ramp_target_ = -1.0f;
    if (!ended_.push(Ended{serial_, position()}))
        dropped_ends_.fetch_add(1, std::memory_order_relaxed);
}

std::size_t Voice::add(const float* in, float* out, std::size_t frames) {
    const float target = fading() ? 0.0f : gain_;
    if (target != ramp_target_) {
        ramp_target_ = target;
        ramp_left_ = level_ == target ? 0 : kRampFrames;
        step_ = (target - level_) / static_cast<float>(kRampFrames);
    }
    // Counted rather than compared, so every ramp lasts exactly kRampFrames frames.
    std::size_t i = 0;
    for (; i < frames && ramp_left_ > 0; ++i) {
        level_ = --ramp_left_ == 0 ? target : level_ + step_;
        out[2 * i] += in[2 * i] * level_;
        out[2 * i + 1] += in[2 * i + 1] * level_;
    }
    if (faded_out()) return i;
    // Most of the time the level holds still: a plain loop the compiler vectorises.
    const float level = level_;
    for (std::size_t k = 2 * i; k < 2 * frames; ++k)
        out[k] += in[k] * level;
    return frames;
}

void Voice::mix(float* out, std::size_t frames) {
    take_commands();
    std::size_t done = 0;
    while (done < frames && playing_) {
        const Data data = frames_to_end() == 0 ? Data::Ended : next_block();
        if (data != Data::Ready) {
            if (next_load_) {  // nothing left to ramp down: jump now, without an end
                silenced();
                continue;
            }
            if (data == Data::Ended) finish();
            break;
        }
        const Block& block = *ring_.front();
        std::size_t n = std::min<std::size_t>(frames - done, block.frames - offset_);
        const std::int64_t left = frames_to_end();
        if (left > 0) n = std::min<std::size_t>(n, static_cast<std::size_t>(left));
        n = add(block.samples.data() + offset_ * kChannels, out + done * kChannels, n);
        offset_ += n;
        consumed_ += static_cast<std::int64_t>(n);
        done += n;
        if (faded_out()) silenced();
    }
    if (!playing_) {
        // Let the feeder refill after a seek while nothing plays.
        for (Block* block = ring_.front();
             block != nullptr && block->gen != gen_ && !is_newer(block->gen, gen_);
             block = ring_.front()) {
            ring_.release();
            offset_ = 0;
        }
    }
    position_.store(
        (static_cast<std::uint64_t>(gen_ & 0xffff) << 48) | static_cast<std::uint64_t>(position()),
        std::memory_order_release);
}

}  // namespace tavora::audio
