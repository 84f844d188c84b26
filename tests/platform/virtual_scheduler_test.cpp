#include "platform/virtual_scheduler.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "runtime/dates.h"

namespace tavora {
namespace {

// A virtual station day starting at noon, with a log of what fired when.
class VirtualSchedulerTest : public ::testing::Test {
  protected:
    std::unique_ptr<Timer> MakeTimer(std::string name, int interval_ms) {
        auto timer = loop.CreateTimer([this, name] { Note(name); });
        timer->SetInterval(interval_ms);
        timer->SetEnabled(true);
        return timer;
    }
    void Note(const std::string& name) { log.emplace_back(name, clock.ElapsedMs()); }

    VirtualClock clock{DateSerial(2024, 3, 1) + TimeSerial(12, 0, 0)};
    VirtualScheduler loop{clock};
    std::vector<std::pair<std::string, std::int64_t>> log;
};

using Log = std::vector<std::pair<std::string, std::int64_t>>;

TEST_F(VirtualSchedulerTest, TimersFireInTimeOrderAndTiesInCreationOrder) {
    auto slow = MakeTimer("slow", 1000);
    auto fast = MakeTimer("fast", 300);
    loop.run_for(2100);
    EXPECT_EQ(log, (Log{{"fast", 300},
                        {"fast", 600},
                        {"fast", 900},
                        {"slow", 1000},
                        {"fast", 1200},
                        {"fast", 1500},
                        {"fast", 1800},
                        {"slow", 2000},
                        {"fast", 2100}}));
    log.clear();
    // At 3000 both are due: the one created first goes first.
    loop.run_for(900);
    ASSERT_GE(log.size(), 2u);
    EXPECT_EQ(log[log.size() - 2], (std::pair<std::string, std::int64_t>{"slow", 3000}));
    EXPECT_EQ(log.back(), (std::pair<std::string, std::int64_t>{"fast", 3000}));
}

TEST_F(VirtualSchedulerTest, EnablingOrSettingTheIntervalRestartsTheCount) {
    auto t = MakeTimer("t", 1000);
    loop.run_for(600);
    t->SetEnabled(false);
    t->SetEnabled(true);  // from 600: due at 1600
    loop.run_for(1200);   // to 1800
    t->SetEnabled(true);  // already on: no restart, still due at 2600
    loop.run_for(300);    // to 2100
    t->SetInterval(500);  // restarts: due at 2600, then every 500
    loop.run_for(1000);   // to 3100
    EXPECT_EQ(log, (Log{{"t", 1600}, {"t", 2600}, {"t", 3100}}));

    log.clear();
    t->SetInterval(0);
    loop.run_for(5000);
    EXPECT_TRUE(log.empty()) << "interval 0 never fires";
}

TEST_F(VirtualSchedulerTest, HandlerThatTurnsItsTimerOffDoesNotFireAgain) {
    std::unique_ptr<Timer> t;
    t = loop.CreateTimer([&] {
        Note("once");
        t->SetEnabled(false);
    });
    t->SetInterval(300);
    t->SetEnabled(true);
    loop.run_for(3000);
    EXPECT_EQ(log, (Log{{"once", 300}}));
    EXPECT_FALSE(t->Enabled());
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
    loop.run_for(2700);
    // The wait held "other" back: its missed periods at 1000 and 2000 come
    // as one late firing, then it keeps its phase.
    EXPECT_EQ(log, (Log{{"tick", 300}, {"other", 2300}, {"tick", 2600}}));
    log.clear();
    loop.run_for(400);
    EXPECT_EQ(log, (Log{{"tick", 2900}, {"other", 3000}}));
}

TEST_F(VirtualSchedulerTest, BusyWaitMovesTimeAndFiresNothing) {
    auto t = MakeTimer("t", 100);
    const double before = clock.Now();
    clock.BKWait(5000);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(clock.ElapsedMs(), 5000);
    EXPECT_NEAR((clock.Now() - before) * 86400.0, 5.0, 1e-6);
    loop.run_for(250);
    // Fifty missed periods collapse into one firing.
    EXPECT_EQ(log, (Log{{"t", 5000}, {"t", 5100}, {"t", 5200}}));
}

TEST_F(VirtualSchedulerTest, PostedWorkRunsBeforeTimeMovesOn) {
    auto t = loop.CreateTimer([&] {
        Note("timer");
        loop.post([&] { Note("posted by timer"); });
    });
    t->SetInterval(100);
    t->SetEnabled(true);
    loop.post([&] { Note("posted"); });
    loop.run_for(150);
    EXPECT_EQ(log, (Log{{"posted", 0}, {"timer", 100}, {"posted by timer", 100}}));
}

TEST_F(VirtualSchedulerTest, RunUntilStopsAtTheDateOrAtQuit) {
    const double start = clock.Now();
    loop.run_until(start + TimeSerial(1, 0, 0));
    EXPECT_EQ(clock.ElapsedMs(), 3'600'000);

    auto t = loop.CreateTimer([&] {
        Note("t");
        if (log.size() == 2) loop.quit();
    });
    t->SetInterval(1000);
    t->SetEnabled(true);
    loop.run_for(60'000);
    EXPECT_EQ(log.size(), 2u);
    EXPECT_EQ(clock.ElapsedMs(), 3'602'000) << "quit leaves the clock at the last event";
}

TEST_F(VirtualSchedulerTest, DestroyingATimerInItsOwnHandlerIsSafe) {
    std::unique_ptr<Timer> t;
    t = loop.CreateTimer([&] {
        Note("t");
        t.reset();
    });
    t->SetInterval(100);
    t->SetEnabled(true);
    loop.run_for(1000);
    EXPECT_EQ(log, (Log{{"t", 100}}));
}

TEST(VirtualClock, SettingTheDateKeepsTimersOnTheirCount) {
    VirtualClock clock(DateSerial(2024, 1, 1));
    VirtualScheduler loop(clock);
    std::vector<std::int64_t> spans;
    clock.SetAdvanceHook([&](std::int64_t from, std::int64_t to) { spans.push_back(to - from); });
    int fired = 0;
    auto t = loop.CreateTimer([&] { ++fired; });
    t->SetInterval(1000);
    t->SetEnabled(true);
    loop.run_for(500);
    clock.Set(DateSerial(2024, 6, 1));
    EXPECT_DOUBLE_EQ(clock.Now(), DateSerial(2024, 6, 1));
    loop.run_for(500);
    EXPECT_EQ(fired, 1);
    EXPECT_NEAR((clock.Now() - DateSerial(2024, 6, 1)) * 86400.0, 0.5, 1e-6);
    EXPECT_EQ(spans, (std::vector<std::int64_t>{500, 500}));
}

}  // namespace
}  // namespace tavora
