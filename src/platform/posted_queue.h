#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

namespace tavora {

// Work handed to the loop thread from anywhere, and the loop's quit request.
// Push and RequestQuit are safe from any thread; the rest belongs to the loop.
class PostedQueue {
  public:
    void Push(std::function<void()> fn);
    void RequestQuit();

    // True once per quit request.
    bool TakeQuit();
    // Runs the oldest job, if any, outside the lock.
    bool RunOne();
    // Sleeps until something is posted, a quit is asked, or the deadline.
    void Wait(std::optional<std::chrono::steady_clock::time_point> deadline);

  private:
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> jobs_;
    bool quit_ = false;
};

}  // namespace tavora
