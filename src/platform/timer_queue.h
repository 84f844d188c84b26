#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "platform/event_loop.h"

namespace tavora {

// The timer bookkeeping that both event loops share: which timer is due
// next, and the firing rules. Time is a millisecond count supplied by the
// owner; it must never go back. Not thread-safe: it lives on the loop thread.
class TimerQueue {
  public:
    using Ms = std::int64_t;

    explicit TimerQueue(std::function<Ms()> now);
    ~TimerQueue();
    TimerQueue(const TimerQueue&) = delete;
    TimerQueue& operator=(const TimerQueue&) = delete;

    // The handle may outlive the queue; it then does nothing.
    std::unique_ptr<Timer> Create(std::function<void()> handler);

    // When the earliest enabled timer is due, if any.
    std::optional<Ms> NextDue() const;
    // Fires the earliest timer due at or before `limit` (ties in creation
    // order) and returns true, or returns false when none is due.
    bool FireNext(Ms limit);

    struct State;

  private:
    std::shared_ptr<State> state_;
};

}  // namespace tavora
