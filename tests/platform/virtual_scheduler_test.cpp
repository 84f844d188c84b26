#include "platform/virtual_scheduler.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "runtime/dates.h"

namespace tavora {
namespace {

// A virtual day from noon, with a log of what fired when: "name@ms ...".
class VirtualSchedulerTest : public ::testing::Test {
  protected:
    std::unique_ptr<Timer> MakeTimer(std::string name, int interval_ms) {
        auto timer = loop.CreateTimer([this, name] { Note(name); });
        timer->SetInterval(interval_ms);
        timer->SetEnabled(true);
        return timer;
    }
    void Note(const std::string& name) {
        log += (log.empty() ? "" : " ") + name + "@" + std::to_string(clock.ElapsedMs());
    }
    std::string TakeLog() { return std::exchange(log, {}); }

    VirtualClock clock{DateSerial(2024, 3, 1) + TimeSerial(12, 0, 0)};
    VirtualScheduler loop{clock};
    std::string log;
};

TEST_F(VirtualSchedulerTest, TimersFireInTimeOrderTiesInCreationOrderAndEnablingRestartsTheCount) {
    auto slow = MakeTimer("slow", 1000);
    auto fast = MakeTimer("fast", 300);
    loop.run_for(2100);
    EXPECT_EQ(TakeLog(),
              "fast@300 fast@600 fast@900 slow@1000 fast@1200 fast@1500 fast@1800 slow@2000 "
              "fast@2100");
    loop.run_for(900);
    EXPECT_EQ(TakeLog(), "fast@2400 fast@2700 slow@3000 fast@3000");
    slow.reset();
    fast.reset();

    // Enabling or setting the interval restarts the count.
    auto t = MakeTimer("t", 1000);
    loop.run_for(600);
    t->SetEnabled(false);
    t->SetEnabled(true);  // from 3600: due at 4600
    loop.run_for(1200);
    t->SetEnabled(true);  // already on at 4800: no restart, still due at 5600
    loop.run_for(900);
    t->SetInterval(500);  // at 5700: due at 6200
    loop.run_for(600);
    EXPECT_EQ(TakeLog(), "t@4600 t@5600 t@6200");

    t->SetInterval(0);
    loop.run_for(5000);
    EXPECT_EQ(TakeLog(), "") << "interval 0 never fires";
}

TEST_F(VirtualSchedulerTest, HandlerThatTurnsItsTimerOffOrDestroysItDoesNotFireAgain) {
    std::unique_ptr<Timer> off, gone;
    off = loop.CreateTimer([&] {
        Note("off");
        off->SetEnabled(false);
    });
    gone = loop.CreateTimer([&] {
        Note("gone");
        gone.reset();
    });
    for (Timer* t : {off.get(), gone.get()}) {
        t->SetInterval(300);
        t->SetEnabled(true);
    }
    loop.run_for(3000);
    EXPECT_EQ(TakeLog(), "off@300 gone@300");
    EXPECT_FALSE(off->Enabled());
}

TEST_F(VirtualSchedulerTest, TickThatWaitsInsideCountsFromItsOwnEnd) {
    // The transport tick's pattern: off at the start, a busy wait, on again.
    auto other = MakeTimer("other", 1000);
    std::unique_ptr<Timer> tick;
    bool waited = false;
    tick = loop.CreateTimer([&] {
        tick->SetEnabled(false);
        Note("tick");
        if (!std::exchange(waited, true)) clock.BKWait(2000);
        tick->SetEnabled(true);
    });
    tick->SetInterval(300);
    tick->SetEnabled(true);
    // The wait held "other" back: its periods at 1000 and 2000 come as one
    // late firing, then it keeps its phase.
    loop.run_for(3100);
    EXPECT_EQ(TakeLog(), "tick@300 other@2300 tick@2600 tick@2900 other@3000");
}

TEST_F(VirtualSchedulerTest, PostedWorkRunsBeforeTimeMovesOn) {
    auto t = loop.CreateTimer([&] {
        Note("timer");
        loop.post([&] { Note("posted-by-timer"); });
    });
    t->SetInterval(100);
    t->SetEnabled(true);
    loop.post([&] { Note("posted"); });
    loop.run_for(150);
    EXPECT_EQ(TakeLog(), "posted@0 timer@100 posted-by-timer@100");
}

TEST_F(VirtualSchedulerTest, RunUntilStopsAtTheDateOrAtQuit) {
    loop.run_until(clock.Now() + TimeSerial(1, 0, 0));
    EXPECT_EQ(clock.ElapsedMs(), 3'600'000);

    int fired = 0;
    auto t = loop.CreateTimer([&] {
        if (++fired == 2) loop.quit();
    });
    t->SetInterval(1000);
    t->SetEnabled(true);
    loop.run_for(60'000);
    EXPECT_EQ(fired, 2);
    EXPECT_EQ(clock.ElapsedMs(), 3'602'000) << "quit leaves the clock at the last event";
}

TEST_F(VirtualSchedulerTest, SettingTheDateKeepsTimersOnTheirCount) {
    std::string spans;
    clock.SetAdvanceHook([&](std::int64_t from, std::int64_t to) {
        spans += std::to_string(from) + "-" + std::to_string(to) + " ";
    });
    auto t = MakeTimer("t", 1000);
    loop.run_for(500);
    clock.Set(DateSerial(2024, 6, 1));
    loop.run_for(500);
    EXPECT_EQ(TakeLog(), "t@1000");
    EXPECT_NEAR((clock.Now() - DateSerial(2024, 6, 1)) * 86400.0, 0.5, 1e-6);
    EXPECT_EQ(spans, "0-500 500-1000 ");
}

}  // namespace
}  // namespace tavora
