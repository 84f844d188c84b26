#include "platform/real_time_loop.h"

namespace tavora {

RealTimeLoop::RealTimeLoop()
    : start_(std::chrono::steady_clock::now()), timers_([this] { return Elapsed(); }) {}

TimerQueue::Ms RealTimeLoop::Elapsed() const {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now() - start_).count();
}

std::unique_ptr<Timer> RealTimeLoop::CreateTimer(std::function<void()> handler) {
    return timers_.Create(std::move(handler));
}

void RealTimeLoop::run() {
    for (;;) {
        // One posted job and one timer per round, so a busy poster can't
        // starve the timers, nor a slow timer the posted work.
        if (posted_.TakeQuit()) return;
        const bool ran_posted = posted_.RunOne();
        if (ran_posted && posted_.TakeQuit()) return;
        if (timers_.FireNext(Elapsed()) || ran_posted) continue;

        std::optional<std::chrono::steady_clock::time_point> deadline;
        if (const auto due = timers_.NextDue()) deadline = start_ + std::chrono::milliseconds(*due);
        posted_.Wait(deadline);
    }
}

}  // namespace tavora
