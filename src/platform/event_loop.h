#pragma once

#include <functional>
#include <memory>

namespace tavora {

// A timer as the rules drive it. `Interval` is in milliseconds and 0 never
// fires. Turning `Enabled` on, or setting `Interval` while enabled, starts the
// count again from now. A handler runs to its end before any other event, and
// a timer turned off inside its own handler does not fire again.
class Timer {
  public:
    virtual ~Timer() = default;
    virtual int Interval() const = 0;
    virtual void SetInterval(int ms) = 0;
    virtual bool Enabled() const = 0;
    virtual void SetEnabled(bool on) = 0;
};

// The one thread on which all rules run. Timers belong to that thread: create
// and change them only from it. Destroying a timer stops it.
class EventLoop {
  public:
    virtual ~EventLoop() = default;
    // A new timer starts disabled with interval 0.
    virtual std::unique_ptr<Timer> CreateTimer(std::function<void()> handler) = 0;
    // Safe from any thread: `fn` runs later on the loop thread, in posting order.
    virtual void post(std::function<void()> fn) = 0;
    // Makes the running loop return once the current event is done.
    virtual void quit() = 0;
};

}  // namespace tavora
