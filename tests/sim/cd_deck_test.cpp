// The CD's deck on a player of the audio engine, with the engine's events
// delivered in an order its threads may give them.
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "audio/engine.h"
#include "disc_images.h"
#include "playback/cd_deck.h"
#include "players/engine_player.h"
#include "test_folder.h"

namespace tavora {
namespace {

// Holds the engine's events for the test to run. A post from this thread
// first waits for the open under way, so that the decoder's news of it
// comes before the change the open made: a race the decoder may win.
class HeldEvents {
  public:
    audio::Post post() {
        return [this](std::function<void()> fn) {
            if (std::this_thread::get_id() == rules_ && engine) engine->settle();
            std::lock_guard lock(mutex_);
            held_.push_back(std::move(fn));
        };
    }
    void run() {
        for (;;) {
            std::function<void()> fn;
            {
                std::lock_guard lock(mutex_);
                if (held_.empty()) return;
                fn = std::move(held_.front());
                held_.pop_front();
            }
            fn();
        }
    }
    audio::Engine* engine = nullptr;

  private:
    const std::thread::id rules_ = std::this_thread::get_id();
    std::mutex mutex_;
    std::deque<std::function<void()>> held_;
};

TEST(CdDeck, AFileSwappedUnderAWaitingPlayIsNoEnd) {
    TestFolder folder;
    write_track(folder.path() / "01 Track.wav", 30 * 75);
    write_track(folder.path() / "03 Track.wav", 30 * 75);
    HeldEvents events;
    audio::Engine engine(audio::OutputKind::Offline, events.post());
    events.engine = &engine;
    PlayerDeck deck(engine_player(engine, events.post()));
    int ends = 0;
    deck.ended = [&ends] { ++ends; };

    deck.load((folder.path() / "01 Track.wav").string());
    events.run();
    deck.play(0);
    events.run();
    ASSERT_TRUE(deck.playing());
    deck.stop();
    events.run();

    // The next track's file: its play waits for the open.
    deck.load((folder.path() / "03 Track.wav").string());
    deck.play(2);
    EXPECT_FALSE(deck.ready());
    events.run();
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(deck.playing());
    EXPECT_NEAR(deck.position(), 2, 0.1);
}

}  // namespace
}  // namespace tavora
