#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "offline_station.h"

namespace tavora::audio {
namespace {

using namespace std::chrono_literals;

// A rule thread's loop for the real-time outputs: events arrive from the engine's threads.
class Loop {
  public:
    Post poster() {
        return [this](std::function<void()> f) {
            {
                std::lock_guard lock(mutex_);
                queue_.push_back(std::move(f));
            }
            ready_.notify_one();
        };
    }
    // Runs events until `done` holds or `limit` has passed; says whether it held.
    bool run_until(const std::function<bool()>& done, std::chrono::milliseconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        std::unique_lock lock(mutex_);
        while (!done()) {
            if (!ready_.wait_until(lock, deadline, [this] { return !queue_.empty(); }))
                return false;
            auto f = std::move(queue_.front());
            queue_.pop_front();
            lock.unlock();
            f();
            lock.lock();
        }
        return true;
    }

  private:
    std::mutex mutex_;
    std::condition_variable ready_;
    std::deque<std::function<void()>> queue_;
};

// The null output keeps the clock's pace, and the end of play reaches the rule thread.
TEST(RealTime, NullOutputPlaysAtTheClocksPaceAndTellsTheEnd) {
    Loop loop;
    Engine engine(OutputKind::Null, loop.poster());
    auto player = engine.add_player();
    bool ended = false;
    player->PlayStateChange = [&ended](int, int state) { ended = state == Player::kStopped; };
    player->Open(test::media("tone.wav"));
    ASSERT_TRUE(loop.run_until([&] { return player->ReadyState() == Player::kReady; }, 5s));
    player->play();
    std::this_thread::sleep_for(500ms);
    EXPECT_GT(player->CurrentPosition(), 0.3);
    EXPECT_LT(player->CurrentPosition(), 0.9);
    player->CurrentPosition(2.8);
    EXPECT_TRUE(loop.run_until([&] { return ended; }, 3s));
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 3.0);
}

// Without a sound card the engine says so and plays to the null output instead.
TEST(RealTime, CardOutputFallsBackWithAReason) {
    Loop loop;
    Engine engine(OutputKind::Card, loop.poster());
    if (engine.output() == OutputKind::Card) {
        EXPECT_TRUE(engine.note().empty());
    } else {
        EXPECT_EQ(engine.output(), OutputKind::Null);
        EXPECT_NE(engine.note().find("null output"), std::string::npos) << engine.note();
    }
}

}  // namespace
}  // namespace tavora::audio
