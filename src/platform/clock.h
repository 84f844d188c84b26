#pragma once

#include <cstdint>
#include <functional>

namespace tavora {

// Where the rules read `Now`. Dates are doubles: days since 1899-12-30, the
// time of day in the fraction.
class Clock {
  public:
    virtual ~Clock() = default;
    virtual double Now() const = 0;
    // The busy wait: blocks the calling thread for `ms` and runs no event, so
    // timers and posted work wait until it returns.
    virtual void BKWait(std::int64_t ms) = 0;
};

// Local wall-clock time, to the millisecond.
class SystemClock : public Clock {
  public:
    double Now() const override;
    void BKWait(std::int64_t ms) override;
};

// Time that moves only when told to, in whole milliseconds, so that a run is
// exactly repeatable. Counting milliseconds instead of adding to a double
// keeps a day of 300 ms ticks free of rounding drift.
class VirtualClock : public Clock {
  public:
    // Called with the old and new elapsed count whenever time moves on, so
    // that work paced by time (an offline audio render) can keep up.
    using AdvanceHook = std::function<void(std::int64_t from_ms, std::int64_t to_ms)>;

    explicit VirtualClock(double start);

    double Now() const override;
    // Moves time on without firing anything.
    void BKWait(std::int64_t ms) override { Advance(ms); }

    // Milliseconds since construction; it never goes back.
    std::int64_t ElapsedMs() const { return elapsed_ms_; }
    void Advance(std::int64_t ms);
    // Jumps the calendar (as an operator setting the PC's clock would) without
    // moving the elapsed count that timers run on.
    void Set(double date);
    void SetAdvanceHook(AdvanceHook hook) { hook_ = std::move(hook); }

  private:
    double origin_;  // the date at elapsed 0
    std::int64_t elapsed_ms_ = 0;
    AdvanceHook hook_;
};

}  // namespace tavora
