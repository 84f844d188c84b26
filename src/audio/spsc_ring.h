#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace tavora::audio {

// Single-producer single-consumer queue of preallocated slots. The producer fills a slot
// in place and publishes it; the consumer reads the oldest in place and releases it. No
// locks and no allocation after construction, so either side may be an audio callback.
// The counters sit on their own cache lines so the two threads don't share one.
template <typename T>
class SpscRing {
  public:
    explicit SpscRing(std::size_t capacity)
        : slots_(std::make_unique<T[]>(capacity)), capacity_(capacity) {}

    std::size_t capacity() const { return capacity_; }

    // Producer side.
    T* reserve() {
        const std::size_t head = head_.load(std::memory_order_relaxed);
        if (head - tail_.load(std::memory_order_acquire) >= capacity_) return nullptr;
        return &slots_[head % capacity_];
    }
    // Sequentially consistent, with the flag below: either the producer sees a consumer
    // about to wait, or that consumer sees the new slot.
    void publish() { head_.fetch_add(1); }
    // Wakes a consumer blocked in wait_for_publish(), if there is one. Kept apart from
    // publish() so a producer can hand over many slots for one wake-up: each wake-up is
    // a system call.
    void notify_consumer() {
        if (consumer_waiting_.load()) head_.notify_all();
    }
    bool push(T value) {
        T* slot = reserve();
        if (slot == nullptr) return false;
        *slot = std::move(value);
        publish();
        return true;
    }
    std::size_t filled() const {
        return head_.load(std::memory_order_relaxed) - tail_.load(std::memory_order_acquire);
    }
    std::size_t free_slots() const { return capacity_ - filled(); }

    // Consumer side.
    T* front() {
        const std::size_t tail = tail_.load(std::memory_order_relaxed);
        if (head_.load(std::memory_order_acquire) == tail) return nullptr;
        return &slots_[tail % capacity_];
    }
    void release() { tail_.fetch_add(1, std::memory_order_release); }
    bool pop(T& out) {
        T* slot = front();
        if (slot == nullptr) return false;
        out = std::move(*slot);
        release();
        return true;
    }
    // Blocks until the producer publishes and notifies; only for consumers that may wait.
    void wait_for_publish(std::size_t seen) {
        consumer_waiting_.store(true);
        if (head_.load() == seen) head_.wait(seen);
        consumer_waiting_.store(false);
    }
    std::size_t published() const { return head_.load(std::memory_order_acquire); }

  private:
    std::unique_ptr<T[]> slots_;
    std::size_t capacity_;
    alignas(64) std::atomic<std::size_t> head_{0};  // written by the producer only
    alignas(64) std::atomic<std::size_t> tail_{0};  // written by the consumer only
    std::atomic<bool> consumer_waiting_{false};
};

}  // namespace tavora::audio
