#include "audio/player.h"
#include "audio/spsc_ring.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <future>
#include <thread>
#include <utility>
#include <vector>

#include "offline_station.h"

namespace tavora::audio {
namespace {

using test::index_at;
using test::OfflineStation;

constexpr std::size_t kRamp = Voice::kRampFrames;

class PlayerTest : public ::testing::Test {
  protected:
    OfflineStation station;
};

using Changes = std::vector<std::pair<int, int>>;  // from, to

// What a player's events have told.
struct Recorded {
    explicit Recorded(Player& player) {
        player.PlayStateChange = [this](int from, int to) { changes.emplace_back(from, to); };
        player.ReadyStateChange = [this] { ++ready; };
        player.Error = [this] { ++errors; };
    }
    Changes changes;
    int ready = 0;
    int errors = 0;
};

TEST_F(PlayerTest, OpenDoesNotWaitAndThenTellsTheLength) {
    auto player = station.engine().add_player();
    Recorded seen(*player);
    player->Open(test::media("index.wav"));
    EXPECT_EQ(player->PlayState(), Player::kClosed);
    EXPECT_NE(player->ReadyState(), Player::kReady);
    station.engine().settle();
    station.run_events();
    EXPECT_EQ(player->PlayState(), Player::kStopped);
    EXPECT_EQ(player->ReadyState(), Player::kReady);
    EXPECT_DOUBLE_EQ(player->Duration(), 4.0);
    EXPECT_DOUBLE_EQ(player->SelectionEnd(), 4.0);
    EXPECT_EQ(seen.ready, 1);
    EXPECT_TRUE(seen.changes.empty());  // opening is not a play-state change
}

TEST_F(PlayerTest, PlaysTheSelectionToItsFrameAndStopGoesBackToItsStart) {
    auto player = station.open("index.wav");
    Recorded seen(*player);
    player->SelectionStart(0.5);
    player->SelectionEnd(1.0);
    player->CurrentPosition(0.5);
    player->play();
    const auto mix = station.render(30000);
    EXPECT_EQ(index_at(mix, kRamp), 24000 + long(kRamp));
    EXPECT_EQ(index_at(mix, 23999), 47999);  // the last frame of the selection
    EXPECT_EQ(mix[24000 * kChannels], 0.0f);
    EXPECT_EQ(mix[24000 * kChannels + 1], 0.0f);
    EXPECT_EQ(player->PlayState(), Player::kStopped);
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 1.0);
    EXPECT_EQ(seen.changes, (Changes{{0, 2}, {2, 0}}));

    // Playing again starts over at the selection's start.
    player->play();
    const auto again = station.render(1000);
    EXPECT_EQ(index_at(again, 500), 24500);

    // Stop goes back to the selection's start, is told, and falls silent.
    player->Stop();
    station.run_events();
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 0.5);
    EXPECT_EQ(seen.changes, (Changes{{0, 2}, {2, 0}, {0, 2}, {2, 0}}));
    const auto silent = station.render(1000);
    EXPECT_EQ(index_at(silent, 999), 0);

    // Nothing open: a Stop tells nothing.
    auto closed = station.engine().add_player();
    Recorded none(*closed);
    closed->Stop();
    station.run_events();
    EXPECT_TRUE(none.changes.empty());
}

// Positions count the frames really mixed, and those are the file's frames in order; a
// pause holds the frame, and writing the position while playing jumps there.
TEST_F(PlayerTest, PositionFollowsTheFramesMixedThroughPauseAndJump) {
    auto player = station.open("index.wav");
    player->play();
    const auto mix = station.render(10000);
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 10000.0 / kRate);
    for (std::size_t i = kRamp; i < 10000; i += 997)
        EXPECT_EQ(index_at(mix, i), long(i));

    player->pause();
    EXPECT_EQ(player->PlayState(), Player::kPaused);
    const auto fading = station.render(2 * kRamp);  // a short ramp down, then silence
    EXPECT_EQ(fading[(2 * kRamp - 1) * kChannels], 0.0f);
    const double held = player->CurrentPosition();
    station.render(5000);
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), held);
    player->play();
    const auto resumed = station.render(2000);
    const long first = std::lround(held * kRate);
    EXPECT_EQ(index_at(resumed, kRamp), first + long(kRamp));
    EXPECT_EQ(index_at(resumed, 1999), first + 1999);

    player->CurrentPosition(3.0);
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 3.0);
    const auto jumped = station.render(2000);  // a ramp of the old place first, then the new
    EXPECT_EQ(index_at(jumped, 1500), 3 * kRate + 1500 - long(kRamp));
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 3.0 + double(2000 - kRamp) / kRate);
}

// A damaged file opened over one cued but never played: the error is told, the
// offline engine does not wait for ever on it, and another player plays on.
TEST_F(PlayerTest, AFailedOpenOverACuedFileIsReportedWhileAnotherPlaysOn) {
    auto cued = station.open("long.flac");
    // The feeder decodes ahead until the ring is full: ten of the thirty seconds.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    auto playing = station.open("index.wav");
    playing->play();
    station.render(4800);

    const std::string junk = test::media("damaged.mp3");
    std::ofstream(junk) << std::string(20000, '\x55');
    Recorded seen(*cued);
    cued->Open(junk);
    const auto during = station.render(4800);
    std::promise<void> settled;
    std::thread([this, &settled] {
        station.engine().settle();
        settled.set_value();
    }).detach();
    if (settled.get_future().wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
        ADD_FAILURE() << "the engine waits for ever on the failed open";
        std::_Exit(1);  // the waiting thread holds the station
    }
    station.run_events();
    EXPECT_EQ(seen.errors, 1);
    EXPECT_NE(cued->ErrorDescription().find("damaged.mp3"), std::string::npos);
    EXPECT_EQ(cued->PlayState(), Player::kClosed);
    cued->play();  // nothing open: ignored
    const auto after = station.render(4800);
    for (std::size_t i = 0; i < 4800; i += 479) {
        EXPECT_EQ(index_at(during, i), 4800 + long(i));
        EXPECT_EQ(index_at(after, i), 9600 + long(i));
    }
}

TEST_F(PlayerTest, RateOneAndAHalfPlaysThirtySecondsInTwenty) {
    auto player = station.open("long.flac");
    ASSERT_NEAR(player->Duration(), 30.0, 0.001);
    player->Rate(1.5);
    EXPECT_NEAR(station.play_out(*player), 20.0, 0.15);
    EXPECT_NEAR(player->CurrentPosition(), 30.0, 0.05);
}

TEST(Player, OfflineRenderingIsTheSameEveryTime) {
    auto run = [] {
        OfflineStation station;
        auto a = station.open("tone.mp3");
        auto b = station.open("tone.ogg");
        a->Volume(-300);
        a->play();
        std::vector<float> all = station.render(20000);
        b->CurrentPosition(1.25);
        b->play();
        a->Volume(-1200);
        for (int i = 0; i < 10; ++i)
            station.render(7000, all);
        // Ramps down before seeks and a stop read past where they began.
        b->CurrentPosition(0.5);
        station.render(900, all);
        b->CurrentPosition(2.0);
        a->Stop();
        station.render(3000, all);
        return all;
    };
    EXPECT_EQ(run(), run());
}

// A mixer that falls behind: commands beyond what the ring holds are lost,
// counted and told as an error, and the player takes commands again once
// the mixer has caught up.
TEST_F(PlayerTest, ACommandTheRingCannotHoldIsCountedAndReported) {
    auto player = station.open("index.wav");
    Recorded seen(*player);
    for (int i = 0; i < 300; ++i)
        player->Volume(-i);
    station.run_events();
    EXPECT_GT(player->dropped(), 0u);
    EXPECT_LT(player->dropped(), 300u);
    EXPECT_GE(seen.errors, 1);
    EXPECT_FALSE(player->ErrorDescription().empty());

    station.render(1000);
    const auto lost = player->dropped();
    player->play();
    station.render(1000);
    EXPECT_EQ(player->dropped(), lost);
    EXPECT_EQ(player->PlayState(), Player::kPlaying);
}

TEST(SpscRing, KeepsOrderAndCapacity) {
    SpscRing<int> ring(3);
    for (int value : {1, 2, 3})
        EXPECT_TRUE(ring.push(value));
    EXPECT_FALSE(ring.push(4));
    int out = 0;
    ASSERT_TRUE(ring.pop(out));
    EXPECT_EQ(out, 1);
    EXPECT_TRUE(ring.push(4));  // wraps around
    for (int expected : {2, 3, 4}) {
        ASSERT_TRUE(ring.pop(out));
        EXPECT_EQ(out, expected);
    }
    EXPECT_FALSE(ring.pop(out));
}

// The null output keeps the clock's pace, and the end of play reaches the rule thread.
TEST(RealTime, NullOutputPlaysAtTheClocksPaceAndTellsTheEnd) {
    test::OfflineStation station(OutputKind::Null);
    auto player = station.engine().add_player();
    bool ended = false;
    player->PlayStateChange = [&ended](int, int state) { ended = state == Player::kStopped; };
    player->Open(test::media("tone.wav"));
    ASSERT_TRUE(station.run_until([&] { return player->ReadyState() == Player::kReady; },
                                  std::chrono::seconds(5)));
    player->play();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_GT(player->CurrentPosition(), 0.3);
    EXPECT_LT(player->CurrentPosition(), 0.9);
    player->CurrentPosition(2.8);
    EXPECT_TRUE(station.run_until([&] { return ended; }, std::chrono::seconds(3)));
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
