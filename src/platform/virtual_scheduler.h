#pragma once

#include <cstdint>
#include <functional>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/posted_queue.h"
#include "platform/timer_queue.h"

namespace tavora {

// Runs the rules on virtual time for the simulator and tests: time jumps from
// one event to the next, so a day of station time takes as long as its
// handlers do. Posted work runs before time moves on; timers due at the same
// moment fire in the order they were created.
class VirtualScheduler : public EventLoop {
  public:
    explicit VirtualScheduler(VirtualClock& clock);

    std::unique_ptr<Timer> CreateTimer(std::function<void()> handler) override;
    void post(std::function<void()> fn) override { posted_.Push(std::move(fn)); }
    void quit() override { posted_.RequestQuit(); }

    // Runs every event up to the given date and leaves the clock there (or
    // later, if a handler's busy wait went past it). After quit() it returns
    // at once, with the clock where the last event left it.
    void run_until(double date);
    void run_for(std::int64_t ms);

  private:
    void RunUntilMs(std::int64_t target);

    VirtualClock& clock_;
    TimerQueue timers_;
    PostedQueue posted_;
};

}  // namespace tavora
