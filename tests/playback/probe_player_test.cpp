#include "players/probe_player.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "bank_fixture.h"
#include "players/engine_player.h"

namespace tavora::test {
namespace {

class PlayerTest : public ::testing::Test {
  protected:
    PlayerTest() : fake(DateSerial(2026, 3, 9)) {}

    void watch(MediaPlayer& player) {
        player.PlayStateChange = [this](int, int state) { states.push_back(state); };
        player.Error = [this] { ++errors; };
    }
    std::string song(const char* name) { return media_folder() + "/" + name; }

    // A player that can't open its file reads as stopped and, asked to play,
    // starts and ends at once, so the bank moves on.
    void expect_passes_over(MediaPlayer& player) {
        EXPECT_EQ(errors, 1);
        EXPECT_FALSE(player.ErrorDescription().empty());
        EXPECT_EQ(player.PlayState(), MediaPlayer::kStopped);
        EXPECT_NE(player.ReadyState(), MediaPlayer::kReady);
        states.clear();
        player.play();
        fake.loop.run_for(1);
        EXPECT_EQ(states, (std::vector<int>{2, 0}));
    }

    FakeServices fake;
    std::vector<int> states;
    int errors = 0;
};

TEST_F(PlayerTest, ProbePlaysOnTheClockToItsSelectionEnd) {
    ProbePlayer player(fake.clock, fake.loop);
    watch(player);
    player.Open(song("song150.mp3"));
    EXPECT_EQ(player.PlayState(), MediaPlayer::kStopped);
    EXPECT_EQ(player.ReadyState(), MediaPlayer::kReady);
    EXPECT_NEAR(player.Duration(), 150, 0.1);
    EXPECT_DOUBLE_EQ(player.SelectionEnd(), player.Duration());

    player.SelectionStart(20);
    player.CurrentPosition(20);
    player.SelectionEnd(30);
    player.play();
    fake.loop.run_for(4000);
    EXPECT_NEAR(player.CurrentPosition(), 24, 1e-6);
    player.pause();
    fake.loop.run_for(5000);
    EXPECT_NEAR(player.CurrentPosition(), 24, 1e-6);
    player.play();
    fake.loop.run_for(5999);
    EXPECT_EQ(player.PlayState(), MediaPlayer::kPlaying);
    fake.loop.run_for(2);
    EXPECT_EQ(player.PlayState(), MediaPlayer::kStopped);
    EXPECT_NEAR(player.CurrentPosition(), 30, 1e-6);
    EXPECT_EQ(states, (std::vector<int>{2, 1, 2, 0}));

    // A new play after the end starts from the selection start; a stop goes
    // back there and always tells.
    player.play();
    fake.loop.run_for(1000);
    EXPECT_NEAR(player.CurrentPosition(), 21, 1e-6);
    player.Stop();
    player.Stop();
    fake.loop.run_for(1);
    EXPECT_DOUBLE_EQ(player.CurrentPosition(), 20);
    EXPECT_EQ(states, (std::vector<int>{2, 1, 2, 0, 2, 0, 0}));
}

TEST_F(PlayerTest, ProbeMeasuresAFileAgainOnceItChanged) {
    const std::filesystem::path path = fake.folder.Write("changing.mp3", "");
    ProbePlayer player(fake.clock, fake.loop);
    for (auto [name, seconds] : {std::pair{"song150.mp3", 150}, {"spot20.mp3", 20}}) {
        std::filesystem::copy_file(song(name), path,
                                   std::filesystem::copy_options::overwrite_existing);
        player.Open(path.string());
        EXPECT_NEAR(player.Duration(), seconds, 0.1);
    }
    std::filesystem::remove(path);
    player.Open(path.string());
    EXPECT_EQ(player.ReadyState(), 0);
    EXPECT_FALSE(player.ErrorDescription().empty());
}

TEST_F(PlayerTest, ProbeAndEnginePlayersPassOverADamagedFile) {
    const std::string broken = fake.folder.Write("broken.mp3", "this is no audio").string();
    ProbePlayer probe(fake.clock, fake.loop);
    watch(probe);
    probe.Open(broken);
    fake.loop.run_for(1);
    expect_passes_over(probe);

    errors = 0;
    audio::Post post = [this](std::function<void()> f) { fake.loop.post(std::move(f)); };
    audio::Engine engine(audio::OutputKind::Offline, post);
    auto player = engine_players(engine, post, probe_players(fake.clock, fake.loop))(1);
    ASSERT_TRUE(player);
    watch(*player);
    player->Open(broken);
    EXPECT_EQ(player->PlayState(), MediaPlayer::kClosed);
    engine.settle();
    fake.loop.run_for(1);
    expect_passes_over(*player);
}

}  // namespace
}  // namespace tavora::test
