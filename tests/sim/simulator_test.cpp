#include <filesystem>
#include <string>

#include "sim/event_log.h"
#include "sim_station.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;

using Simulator = SimStation;

// Just after midnight, before the daily playlist run is due at half past,
// nothing but the script starts the players.
TEST_F(Simulator, TheScriptStartsTheRunAndAnswersItsDialogs) {
    auto_start(false);
    const double night = kStart - 14.0 / 24.0 + 2.0 / 1440.0;
    const SimRun run = simulate("25",
                                "00:01:00 click QXMain.mnu_File_Run\n"
                                "# a second Run while the players play asks first\n"
                                "00:10:00 answer Cancel\n"
                                "00:10:00 click QXMain.mnu_File_Run\n",
                                true, {}, night);
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.lines("DIALOG"),
              std::vector<std::string>{"DIALOG 2026-11-23 00:12:00.000 \"UNLOAD WARNING\" "
                                       "\"This Will unload and STOP the Wave Players! Are You Sure "
                                       "you want to do this?\" -> Cancel"});
    const auto aired = run.lines("AIR");
    ASSERT_FALSE(aired.empty());
    EXPECT_GE(time_of(aired.front()), "2026-11-23 00:03:00") << "aired before the click";
    EXPECT_GT(time_of(aired.back()), "2026-11-23 00:17:00") << "the Cancel kept it playing";
    expect_aired_what_was_picked(run);
}

TEST_F(Simulator, ABadLineOrAnUnknownControlIsReportedAndNothingRuns) {
    for (const auto& [script, error] :
         {std::pair{"00:00:01 click QXMain.mnu_File_Run\n00:00:02 shout hello\n",
                    "line 2: unknown action \"shout\""},
          std::pair{"\n00:00:05 click Request.RB(99)\n", "line 2: no control Request.RB(99)"}}) {
        const SimRun run = simulate("10", script);
        EXPECT_EQ(run.code, 2);
        EXPECT_NE(run.err.find(error), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
    }
}

// The engine renders every frame; the same day gives the same lines, and the
// mix written beside it holds the whole run without a gap.
TEST_F(Simulator, TheEngineGivesTheSameRunTwiceAndTheMixHasNoDeadAir) {
    const fs::path mix = folder_.path() / "mix.wav";
    const SimRun first = simulate("20", "", false, mix);
    ASSERT_EQ(first.code, 0) << first.err;
    EXPECT_GE(first.lines("AIR").size(), 4u) << first.out;
    EXPECT_EQ(first.end("dead_air_s"), 0) << first.out;
    EXPECT_EQ(fs::file_size(mix), 44u + 20u * 60u * 48'000u * 2u * 4u);

    restart();
    EXPECT_EQ(simulate("20", "", false).out, first.out);
}

TEST(EventTime, KeepsTheMillisecondsOfTheMomentWithoutRoundingTheSecond) {
    const double day = DateSerial(2026, 11, 23);
    EXPECT_EQ(event_time(day + (14 * 3600 + 10.9) / 86400.0), "2026-11-23 14:00:10.900");
    EXPECT_EQ(event_time(day + (86400 - 0.001) / 86400.0), "2026-11-23 23:59:59.999");
    EXPECT_EQ(event_time(day + 1), "2026-11-24 00:00:00.000");
}

TEST_F(Simulator, TheScriptRunsTheAutoAddWizard) {
    auto_start(false);
    fs::path song;
    for (const auto& entry : fs::recursive_directory_iterator(home()))
        if (entry.path().extension() == ".mp3") song = entry.path();
    ASSERT_FALSE(song.empty());
    fs::create_directories(home() / "incoming");
    fs::copy_file(song, home() / "incoming" / "New One - Band.mp3");
    fs::copy_file(song, home() / "incoming" / "New Two - Band.mp3");
    const SimRun run = simulate("1",
                                "00:00:01 click QXMain.Mnu_Aut_Add\n"
                                "00:00:02 set frmTavoraDb.Dir1 c:\\tavora\\incoming\n"
                                "00:00:03 click frmTavoraDb.SrchGo\n"
                                "00:00:04 answer Yes\n"
                                "00:00:04 answer No\n"
                                "00:00:05 click AdWiz.Command1\n");
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(holding(run.lines("DIALOG"), "\"2 Records were ADDED from this Folder\"").size(), 1u)
        << run.out;
}

}  // namespace
}  // namespace tavora
