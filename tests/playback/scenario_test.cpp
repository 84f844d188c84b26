#include <gtest/gtest.h>

#include <algorithm>

#include "audio/air_meter.h"
#include "audio/format.h"
#include "bank_fixture.h"
#include "players/engine_player.h"
#include "players/offline_drive.h"

namespace tavora::test {
namespace {

constexpr double kHour = 3600;

class Scenario : public BankTest {
  protected:
    // Runs the station for `seconds` and returns the silences after its
    // first song began.
    std::vector<std::pair<double, double>> air_for(double seconds) {
        run();
        wait(seconds);
        EXPECT_TRUE(air.stops.empty());
        return air.silences(now());
    }
    int sets_started() const { return static_cast<int>(air.starts(1).size()); }
};

TEST_F(Scenario, MSevenModeStartsTheNextSetOnceTheSeventhSongHasStopped) {
    station.Ply7_On = 1;
    station.Ply7_View = false;
    const auto gaps = air_for(2 * kHour);
    EXPECT_TRUE(viewer.mode_m7());
    EXPECT_GE(sets_started(), 5) << "the sets go on after the seventh song";
    for (const auto& [at, length] : gaps)
        EXPECT_LT(length, 2.5) << "at " << at;
}

TEST_F(Scenario, AWholeDayUnattended) {
    station.Ply7_On = 1;
    selection.songs.push_back({"spot20.mp3", 0, 1, false, false, 1});
    selection.songs.push_back({"song180.mp3", 6, 5, true, true});
    const auto gaps = air_for(24 * kHour);
    EXPECT_FALSE(viewer.mode_m7()) << "the saved mode is S7";
    EXPECT_TRUE(gaps.empty()) << gaps.size() << " silences, the first at " << gaps[0].first;
    EXPECT_GE(air.starts(7).size(), sets_started() - 1u);
    EXPECT_GT(air.commits.size(), 24 * 3600 / 255u);
}

TEST_F(Scenario, RunRefusesFiftyRowsAndRunsWithFiftyOne) {
    const auto small = fake.home() / "small.mdb";
    ASSERT_EQ(create_library_file(small, start_date()), "");
    ASSERT_TRUE(add_rows(pool, small, 50));
    data1.DatabaseName = small.string();
    int wizard = 0;
    make_probe();
    playback->station_port.Mnu_Aut_Add_Click = [&] { ++wizard; };
    playback->Run();
    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(asked().title, "NOT ENOUGH RECORDS!");
    EXPECT_EQ(wizard, 1);
    EXPECT_TRUE(air.commits.empty());

    ASSERT_TRUE(add_rows(pool, small, 1));
    playback->Run();
    EXPECT_EQ(air.commits.size(), 6u);
    EXPECT_EQ(station.Load_Busy, 1);
}

TEST_F(Scenario, RemoteUseNeverRuns) {
    station.Run_Mode = 1;
    run();
    EXPECT_TRUE(air.commits.empty());
    EXPECT_FALSE(playback->TimerViewer().Enabled());
}

TEST_F(Scenario, TheRunStopsWithItsMessageWhenNoFileExistsAndLogsItWhileTheLogIsOn) {
    selection.songs = {{"gone1.mp3"}, {"gone2.mp3"}};
    station.Log_Due = 2;  // the log is off
    run();
    ASSERT_TRUE(playback->run_stopped());
    EXPECT_EQ(log_text(), "");
    EXPECT_EQ(station.Log_Due, 2);

    station.Log_Due = 0;
    playback->Run();
    ASSERT_TRUE(playback->run_stopped());
    EXPECT_EQ(air.stops, std::vector<std::string>(2, Playback::kNothingPlayable));
    EXPECT_EQ(main.Panel(3).Text, Playback::kNothingPlayable);
    EXPECT_FALSE(playback->TimerViewer().Enabled());
    EXPECT_NE(log_text().find(Playback::kNothingPlayable), std::string::npos);
    wait(60);
    EXPECT_TRUE(air.changes.empty()) << "nothing played";

    // A library put right runs again.
    selection.songs = {{"song150.mp3"}};
    playback->Run();
    EXPECT_FALSE(playback->run_stopped());
    ASSERT_TRUE(wait_until([&] { return !air.starts(1).empty(); }, 10));
}

TEST_F(Scenario, ALeadHeldBeforeTheRunOpensTheSetAsTheLastCommittedFile) {
    put(station, 13, {"song165.mp3", 2, 6}, 99);
    run();
    EXPECT_EQ(station.Slot_RecID[1], 99);
    EXPECT_EQ(station.Slot_MixOut[1], 6) << "a lead keeps its own mix";
    EXPECT_EQ(station.Slot_Ready[13], 0);
    EXPECT_EQ(station.Cue_File, "d:\\song165.mp3");
}

TEST_F(Scenario, ASetAirsThroughTheOfflineEngineWithoutASilentFrame) {
    audio::Post post = [this](std::function<void()> f) { fake.loop.post(std::move(f)); };
    audio::Engine engine(audio::OutputKind::Offline, post);
    // The air's own meter, a frame at a time: a sample under 1e-4 is quiet.
    audio::AirMeter meter(-80);
    std::int64_t mixed = 0;
    double longest = 0;  // of the quiet stretches once the music began
    ASSERT_TRUE(engine.add_tap([&](const float* frames, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            meter.feed(frames + i * audio::kChannels, 1);
            const double quiet = meter.quiet_seconds();
            if (quiet < audio::seconds_of_frames(++mixed)) longest = std::max(longest, quiet);
        }
    }));
    OfflineDrive drive(fake.clock, engine);
    selection.songs = {{"tone6.wav"}};
    make(engine_players(engine, post, probe_players(fake.clock, fake.loop)));
    run();
    ASSERT_TRUE(wait_until([&] { return air.starts(6).size() == 1; }, 60));
    for (int slot = 1; slot <= 5; ++slot) {
        const double gap = air.starts(slot + 1)[0] - air.starts(slot)[0];
        EXPECT_NEAR(gap, 6 - 1, 0.31) << slot;  // six seconds, mixed one second early
    }
    wait(5);
    EXPECT_GT(drive.frames_rendered(), 48'000 * 30) << "real audio mixed all along";
    // A sine crosses zero, but never for more than a few frames; a gap
    // between songs would last whole ticks.
    EXPECT_LT(longest, 0.001) << "the six songs overlap at each mix";
}

}  // namespace
}  // namespace tavora::test
