#pragma once

#include <chrono>
#include <functional>

#include "platform/event_loop.h"
#include "platform/posted_queue.h"
#include "platform/timer_queue.h"

namespace tavora {

// The event loop of the headless station: wall-clock timers, and work posted
// from other threads (the audio engine's events). It sleeps until the next
// timer is due or something is posted.
class RealTimeLoop : public EventLoop {
  public:
    RealTimeLoop();

    std::unique_ptr<Timer> CreateTimer(std::function<void()> handler) override;
    void post(std::function<void()> fn) override { posted_.Push(std::move(fn)); }
    void quit() override { posted_.RequestQuit(); }

    // Runs events on the calling thread until quit(). A quit() that came
    // before run() makes it return at once.
    void run();

  private:
    TimerQueue::Ms Elapsed() const;

    const std::chrono::steady_clock::time_point start_;
    TimerQueue timers_;
    PostedQueue posted_;
};

}  // namespace tavora
