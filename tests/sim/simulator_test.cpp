#include "sim/dead_air.h"
#include "sim/event_log.h"
#include "sim/script.h"
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

// A line the parser refuses is stopped the same way; see Script below.
TEST_F(Simulator, AnUnknownControlIsReportedAndNothingRuns) {
    expected_code_ = 2;
    const SimRun run = simulate("10", "\n00:00:05 click Request.RB(99)\n");
    EXPECT_NE(run.err.find("line 2: no control Request.RB(99)"), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "");
}

// The engine renders every frame; the same day gives the same lines, and the
// mix written beside it holds the whole run without a gap.
TEST_F(Simulator, TheEngineGivesTheSameRunTwiceAndTheMixHasNoDeadAir) {
    const fs::path mix = folder_.path() / "mix.wav";
    const SimRun first = simulate("20", "", false, mix);
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

// An action as one line: "<line> <ms> <kind> <form>.<control>(<index>) [<path>] [<text>]".
std::string text_of(const ScriptAction& a) {
    constexpr const char* kKinds[] = {"click",  "close", "answer",    "set",
                                      "append", "write", "cd insert", "cd eject"};
    return std::to_string(a.line) + " " + std::to_string(a.at_ms) + " " +
           kKinds[static_cast<int>(a.kind)] + " " + a.form + "." + a.control + "(" +
           std::to_string(a.index) + ") [" + a.path + "] [" + a.text + "]";
}

TEST(Script, ReadsEveryActionInTimeOrder) {
    const Script script = parse_script(
        "# a day at the venue\r\n"
        "00:10:00 click Request.RB(3)\r\n"
        "\r\n"
        "00:00:05 click QXMain.mnu_File_Run\n"
        "00:10:00 answer Yes\n"
        "01:00:00 set Request.Text1 Blue Harbor\n"
        "02:00:00 append c:\\tavora\\newreq.tqf 12, Amber Skyline\n"
        "25:00:00 write qxsm.ini 1\n"
        "26:00:00 close frmViewer\n"
        "26:01:00 cd insert /srv/discs/Blue Album\n"
        "26:02:00 cd eject\n");
    ASSERT_EQ(script.error, "");
    std::vector<std::string> actions;
    for (const auto& action : script.actions)
        actions.push_back(text_of(action));
    // Lines of one time keep their file order: the press, then its answer.
    EXPECT_EQ(actions, (std::vector<std::string>{
                           "4 5000 click QXMain.mnu_File_Run(-1) [] []",
                           "2 600000 click Request.RB(3) [] []",
                           "5 600000 answer .(-1) [] [Yes]",
                           "6 3600000 set Request.Text1(-1) [] [Blue Harbor]",
                           "7 7200000 append .(-1) [c:\\tavora\\newreq.tqf] [12, Amber Skyline]",
                           "8 90000000 write .(-1) [qxsm.ini] [1]",
                           "9 93600000 close frmViewer.(-1) [] []",
                           "10 93660000 cd insert .(-1) [/srv/discs/Blue Album] []",
                           "11 93720000 cd eject .(-1) [] []",
                       }));
}

TEST(Script, ABadLineIsReportedByNumberAndNothingRuns) {
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        {"00:00:01 click QXMain.mnu_File_Run\n0:00:02 click QXMain.Exit\n",
         "line 2: the time must be HH:MM:SS"},
        {"00:00:01 press Request.RB(1)\n", "line 1: unknown action \"press\""},
        {"\n\n00:00:01 click Request.RB(x)\n",
         "line 3: click needs FORM.CONTROL or FORM.CONTROL(INDEX)"},
        {"00:00:01 click RequestRB\n", "line 1: click needs FORM.CONTROL or FORM.CONTROL(INDEX)"},
        {"00:61:00 answer OK\n", "line 1: the time must be HH:MM:SS"},
        {"00:00:01 append\n", "line 1: append needs PATH TEXT"},
        {"00:00:01 cd insert\n", "line 1: cd needs insert FOLDER or eject"},
        {"00:00:01 cd eject now\n", "line 1: cd needs insert FOLDER or eject"},
        {"00:00:01 close\n", "line 1: close needs FORM"},
        {"00:00:01 close frmViewer now\n", "line 1: close needs FORM"},
    };
    for (const auto& c : cases) {
        const Script script = parse_script(c.text);
        EXPECT_EQ(script.error, c.error) << c.text;
        EXPECT_TRUE(script.actions.empty()) << c.text;
    }
}

TEST(Script, DurationsInTheirFourUnits) {
    EXPECT_EQ(parse_duration("90s"), 90'000);
    EXPECT_EQ(parse_duration("45m"), 45 * 60'000);
    EXPECT_EQ(parse_duration("6h"), 6 * 3'600'000LL);
    EXPECT_EQ(parse_duration("2d"), 2 * 86'400'000LL);
    for (const char* bad : {"", "h", "0h", "-1h", "6", "6w", "1.5h", "6 h"}) {
        EXPECT_FALSE(parse_duration(bad).has_value()) << bad;
    }
}

// Stretches of two seconds or more count, after the first sound only.
TEST(DeadAir, TheMeterHearsSoundAboveMinusFiftyDecibels) {
    constexpr int kRate = 1000;
    DeadAir dead_air;
    MixLevelMeter meter(dead_air, kRate);
    auto play = [&meter](double seconds, float level) {
        std::vector<float> block(static_cast<std::size_t>(seconds * kRate) * 2);
        for (std::size_t i = 0; i < block.size(); ++i) {
            block[i] = (i / 2) % 2 ? level : -level;
        }
        meter.feed(block.data(), block.size() / 2);
    };
    play(3, 0.0f);  // start-up silence
    play(5, 0.5f);
    play(3, 0.002f);  // -54 dBFS: quiet
    play(1, 0.004f);  // -48 dBFS: heard
    play(1.5, 0.0f);  // too short to count
    play(1, 0.5f);
    play(2, 0.0f);
    dead_air.finish(meter.seconds());
    EXPECT_NEAR(dead_air.total_seconds(), 5.0, 0.02);
    EXPECT_NEAR(dead_air.longest_seconds(), 3.0, 0.02);
}

}  // namespace
}  // namespace tavora
