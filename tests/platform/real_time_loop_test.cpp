#include "platform/real_time_loop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "platform/clock.h"

namespace tavora {
namespace {

using namespace std::chrono_literals;

TEST(RealTimeLoop, RunsWorkPostedFromOtherThreadsOnItsOwnThread) {
    RealTimeLoop loop;
    std::vector<int> seen;
    std::thread::id ran_on;
    std::thread poster([&] {
        for (int i = 0; i < 100; ++i)
            loop.post([&seen, i] { seen.push_back(i); });
        loop.post([&] {
            ran_on = std::this_thread::get_id();
            loop.quit();
        });
    });
    loop.run();
    poster.join();
    EXPECT_EQ(ran_on, std::this_thread::get_id());
    ASSERT_EQ(seen.size(), 100u);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(seen[i], i);
}

TEST(RealTimeLoop, TimersFireRepeatedlyAndStopWhenTurnedOffInTheirHandler) {
    RealTimeLoop loop;
    int fast = 0, once = 0;
    auto fast_timer = loop.CreateTimer([&] { ++fast; });
    fast_timer->SetInterval(10);
    fast_timer->SetEnabled(true);
    std::unique_ptr<Timer> once_timer;
    once_timer = loop.CreateTimer([&] {
        ++once;
        once_timer->SetEnabled(false);
    });
    once_timer->SetInterval(5);
    once_timer->SetEnabled(true);
    auto stop = loop.CreateTimer([&] { loop.quit(); });
    stop->SetInterval(150);
    stop->SetEnabled(true);

    const auto start = std::chrono::steady_clock::now();
    loop.run();
    EXPECT_GE(std::chrono::steady_clock::now() - start, 150ms);
    EXPECT_GE(fast, 3);
    EXPECT_EQ(once, 1);
}

TEST(RealTimeLoop, BusyWaitLeavesPostedWorkQueued) {
    RealTimeLoop loop;
    SystemClock clock;
    std::vector<std::string> order;
    std::unique_ptr<Timer> t;
    t = loop.CreateTimer([&] {
        t->SetEnabled(false);
        std::thread([&] {
            loop.post([&] {
                order.push_back("posted");
                loop.quit();
            });
        }).join();
        clock.BKWait(50);
        order.push_back("handler done");
    });
    t->SetInterval(1);
    t->SetEnabled(true);
    loop.run();
    EXPECT_EQ(order, (std::vector<std::string>{"handler done", "posted"}));
}

TEST(RealTimeLoop, QuitBeforeRunReturnsAtOnce) {
    RealTimeLoop loop;
    loop.quit();
    loop.run();  // must not hang
    bool ran = false;
    loop.post([&] {
        ran = true;
        loop.quit();
    });
    loop.run();
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace tavora
