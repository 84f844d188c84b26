#include "audio/feeder.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace tavora::audio {
namespace {

// A mixer waiting for data (offline only) is woken once a quarter of the ring is ready,
// not for every block: a wake-up per block cost more than the mixing.
constexpr std::size_t kWakeBlocks = kRingBlocks / 4;

}  // namespace

Feeder::Feeder(SpscRing<Block>& ring, OnOpened on_opened)
    : ring_(ring),
      on_opened_(std::move(on_opened)),
      decoded_(kBlockFrames * kChannels),
      thread_([this] { run(); }) {}

Feeder::~Feeder() {
    {
        std::lock_guard lock(mutex_);
        quit_ = true;
        abort_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void Feeder::open(std::uint32_t gen, std::string url) {
    {
        std::lock_guard lock(mutex_);
        queue_.clear();
        queue_.push_back(Request{true, gen, std::move(url), 0, 1.0});
        abort_ = true;  // whatever is being opened now is no longer wanted
    }
    changed_.notify_one();
}

void Feeder::seek(std::uint32_t gen, std::int64_t frame, double rate) {
    {
        std::lock_guard lock(mutex_);
        if (!queue_.empty() && !queue_.back().open) queue_.pop_back();
        queue_.push_back(Request{false, gen, {}, frame, rate});
    }
    changed_.notify_one();
}

void Feeder::wait_opened() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] {
        return !opening_ &&
               std::none_of(queue_.begin(), queue_.end(), [](const Request& r) { return r.open; });
    });
}

void Feeder::run() {
    for (;;) {
        Request request;
        bool have_request = false;
        {
            std::unique_lock lock(mutex_);
            for (;;) {
                if (quit_) return;
                if (!queue_.empty()) {
                    request = std::move(queue_.front());
                    queue_.pop_front();
                    have_request = true;
                    if (request.open) {
                        opening_ = true;
                        abort_ = false;
                    }
                    break;
                }
                if (producing_ && ring_.free_slots() >= refill_at_) break;
                // Real-time mixers don't wake us, so look again now and then.
                if (producing_) {
                    changed_.wait_for(lock, std::chrono::milliseconds(20));
                } else {
                    changed_.wait(lock);
                }
            }
        }
        if (have_request) {
            handle(request);
        } else {
            produce();
        }
    }
}

void Feeder::handle(const Request& request) {
    // The mixer ramps the old data down before a seek or an open takes over, reading up to
    // a ramp past where it stood. One more block makes sure that data is there, so the
    // offline mix doesn't depend on how far ahead this thread happened to be. Not from a
    // server, which could hold the new request up; a ramp short of data just cuts early.
    if (producing_ && !decoder_.from_network()) produce();
    gen_ = request.gen;
    staged_.clear();
    staged_read_ = 0;
    input_done_ = false;
    producing_ = true;
    if (request.open) {
        tempo_.start(1.0);
        const OpenResult result = decoder_.open(request.url, &abort_);
        on_opened_(Opened{request.gen, result, decoder_.length()});
        {
            std::lock_guard lock(mutex_);
            opening_ = false;
        }
        idle_.notify_all();
        // Told first: the end mark waits for room in the ring, which a file
        // cued but never played has filled, and an offline mixer makes room
        // only once the rule thread's wait for this open is over.
        if (result.status != OpenStatus::Succeeded) end_generation();
        return;
    }
    if (!decoder_.is_open() || !decoder_.seek(request.frame) ||
        !tempo_.start(std::clamp(request.rate, 0.5, 2.0))) {
        end_generation();
    }
}

// Nothing more comes for this generation; a block marked last says so to the mixer,
// which may be waiting for data.
void Feeder::end_generation() {
    producing_ = false;
    while (!abort_.load()) {
        if (Block* block = ring_.reserve()) {
            block->gen = gen_;
            block->frames = 0;
            block->last = true;
            hand_over(block->last);
            return;
        }
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, std::chrono::milliseconds(20));
    }
}

void Feeder::produce() {
    Block* block = ring_.reserve();
    if (block == nullptr) {
        refill_at_ = ring_.capacity() / 8;  // full: wait for a good share to drain
        return;
    }
    refill_at_ = 1;
    if (!tempo_.active()) {  // the usual case: decode straight into the block
        const std::size_t got = decoder_.read(block->samples.data(), kBlockFrames);
        block->gen = gen_;
        block->frames = static_cast<std::uint32_t>(got);
        block->last = got < kBlockFrames;
        hand_over(block->last);
        if (got < kBlockFrames) producing_ = false;
        return;
    }
    auto staged_frames = [this] { return staged_.size() / kChannels - staged_read_; };
    while (staged_frames() < kBlockFrames && !input_done_) {
        if (staged_read_ > 0) {
            staged_.erase(staged_.begin(),
                          staged_.begin() + static_cast<std::ptrdiff_t>(staged_read_ * kChannels));
            staged_read_ = 0;
        }
        const std::size_t got = decoder_.read(decoded_.data(), kBlockFrames);
        tempo_.process(decoded_.data(), got, staged_);
        if (got == 0) input_done_ = true;
    }
    const std::size_t n = std::min(staged_frames(), kBlockFrames);
    std::memcpy(block->samples.data(), staged_.data() + staged_read_ * kChannels,
                n * kChannels * sizeof(float));
    staged_read_ += n;
    block->gen = gen_;
    block->frames = static_cast<std::uint32_t>(n);
    const bool last = input_done_ && staged_frames() == 0;
    block->last = last;
    hand_over(block->last);
    if (last) producing_ = false;
}

void Feeder::hand_over(bool last) {
    ring_.publish();
    if (last || ring_.filled() >= kWakeBlocks) ring_.notify_consumer();
}

}  // namespace tavora::audio
