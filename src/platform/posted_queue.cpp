#include "platform/posted_queue.h"

#include <utility>

namespace tavora {

void PostedQueue::Push(std::function<void()> fn) {
    {
        std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(fn));
    }
    wake_.notify_one();
}

void PostedQueue::RequestQuit() {
    {
        std::lock_guard lock(mutex_);
        quit_ = true;
    }
    wake_.notify_one();
}

bool PostedQueue::TakeQuit() {
    std::lock_guard lock(mutex_);
    return std::exchange(quit_, false);
}

bool PostedQueue::RunOne() {
    std::function<void()> fn;
    {
        std::lock_guard lock(mutex_);
        if (jobs_.empty()) return false;
        fn = std::move(jobs_.front());
        jobs_.pop_front();
    }
    if (fn) fn();
    return true;
}

void PostedQueue::Wait(std::optional<std::chrono::steady_clock::time_point> deadline) {
    std::unique_lock lock(mutex_);
    const auto ready = [this] { return quit_ || !jobs_.empty(); };
    if (deadline) {
        wake_.wait_until(lock, *deadline, ready);
    } else {
        wake_.wait(lock, ready);
    }
}

}  // namespace tavora
