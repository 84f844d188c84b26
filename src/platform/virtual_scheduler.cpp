#include "platform/virtual_scheduler.h"

#include <cmath>

namespace tavora {

VirtualScheduler::VirtualScheduler(VirtualClock& clock)
    : clock_(clock), timers_([&clock] { return clock.ElapsedMs(); }) {}

std::unique_ptr<Timer> VirtualScheduler::CreateTimer(std::function<void()> handler) {
    return timers_.Create(std::move(handler));
}

void VirtualScheduler::run_until(double date) {
    RunUntilMs(clock_.ElapsedMs() + std::llround((date - clock_.Now()) * 86'400'000.0));
}

void VirtualScheduler::run_for(std::int64_t ms) {
    RunUntilMs(clock_.ElapsedMs() + ms);
}

void VirtualScheduler::RunUntilMs(std::int64_t target) {
    for (;;) {
        if (posted_.TakeQuit()) return;
        if (posted_.RunOne()) continue;
        const auto due = timers_.NextDue();
        if (!due || *due > target) break;
        clock_.Advance(*due - clock_.ElapsedMs());
        timers_.FireNext(clock_.ElapsedMs());
    }
    clock_.Advance(target - clock_.ElapsedMs());
}

}  // namespace tavora
