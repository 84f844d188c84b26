#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "offline_station.h"

namespace tavora::audio {
namespace {

using namespace std::chrono_literals;

// The null output keeps the clock's pace, and the end of play reaches the rule thread.
TEST(RealTime, NullOutputPlaysAtTheClocksPaceAndTellsTheEnd) {
    test::OfflineStation station(OutputKind::Null);
    auto player = station.engine().add_player();
    bool ended = false;
    player->PlayStateChange = [&ended](int, int state) { ended = state == Player::kStopped; };
    player->Open(test::media("tone.wav"));
    ASSERT_TRUE(station.run_until([&] { return player->ReadyState() == Player::kReady; }, 5s));
    player->play();
    std::this_thread::sleep_for(500ms);
    EXPECT_GT(player->CurrentPosition(), 0.3);
    EXPECT_LT(player->CurrentPosition(), 0.9);
    player->CurrentPosition(2.8);
    EXPECT_TRUE(station.run_until([&] { return ended; }, 3s));
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 3.0);
}

// Without a sound card the engine says so and plays to the null output instead.
TEST(RealTime, CardOutputFallsBackWithAReason) {
    test::OfflineStation station(OutputKind::Card);
    const Engine& engine = station.engine();
    if (engine.output() == OutputKind::Card) {
        EXPECT_TRUE(engine.note().empty());
    } else {
        EXPECT_EQ(engine.output(), OutputKind::Null);
        EXPECT_NE(engine.note().find("null output"), std::string::npos) << engine.note();
    }
}

}  // namespace
}  // namespace tavora::audio
