#include "platform/real_time_loop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <numeric>
#include <thread>
#include <vector>

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
    std::vector<int> in_order(100);
    std::iota(in_order.begin(), in_order.end(), 0);
    EXPECT_EQ(seen, in_order);
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
    EXPECT_GE(std::chrono::steady_clock::now() - start, 149ms);  // counted in whole ms
    EXPECT_GE(fast, 3);
    EXPECT_EQ(once, 1);
}

}  // namespace
}  // namespace tavora
