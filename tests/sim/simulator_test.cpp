#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "sim/event_log.h"
#include "sim_station.h"
#include "store/library.h"
#include "store/recordset.h"
#include "store/statement.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;

class Simulator : public SimStation {
  protected:
    // The record numbers of the station's own clips.
    std::set<std::string> clips() const {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement rows =
            library->connection().prepare("SELECT RecID FROM Recordings1 WHERE Source IS NOT NULL");
        std::set<std::string> found;
        while (rows.step() == Statement::Step::Row)
            found.insert(rows.column_text(0));
        return found;
    }
};

// Songs air only after selection committed them, each pick once, and in
// time order; only the station's own clips (leads, promos, snipits) come
// another way.
void expect_aired_what_was_picked(const SimRun& run, const std::set<std::string>& clips) {
    const std::regex pick(R"(^PICK \S+ \S+ slot=\d+ recid=(\d+) source=\S+$)");
    const std::regex air(R"(^AIR \S+ (\S+) slot=\d+ player=[1-7] recid=(\d+) ".+"$)");
    std::multiset<std::string> waiting;
    std::string last_time;
    std::istringstream in(run.out);
    for (std::string line; std::getline(in, line);) {
        std::smatch m;
        if (std::regex_match(line, m, pick)) {
            waiting.insert(m[1]);
        } else if (line.rfind("AIR ", 0) == 0) {
            ASSERT_TRUE(std::regex_match(line, m, air)) << line;
            EXPECT_GE(m[1].str(), last_time) << line;
            last_time = m[1];
            const auto picked = waiting.find(m[2]);
            if (picked != waiting.end())
                waiting.erase(picked);
            else
                EXPECT_TRUE(clips.count(m[2])) << "aired without a pick: " << line;
        }
    }
}

TEST_F(Simulator, AutoStartPlaysTheHourAndTheEndLineCountsWhatAired) {
    const SimRun run = simulate("60");
    ASSERT_EQ(run.code, 0) << run.err;
    const auto aired = run.lines("AIR");
    ASSERT_GE(aired.size(), 10u) << run.out;
    expect_aired_what_was_picked(run, clips());
    EXPECT_EQ(run.end_count("aired"), static_cast<long>(aired.size()));
    EXPECT_EQ(run.end_count("picks"), static_cast<long>(run.lines("PICK").size()));
    EXPECT_EQ(run.end_count("dead_air_s"), 0);
    EXPECT_EQ(run.lines("END")[0].substr(0, 27), "END 2026-11-23 15:00:00.000");
}

// Just after midnight, before the daily playlist run is due at half past,
// nothing but the script starts the players.
TEST_F(Simulator, TheScriptStartsTheRunAndAnswersItsDialogs) {
    auto_start(false);
    const double night = kStart - 14.0 / 24.0 + 2.0 / 1440.0;
    const SimRun idle = simulate("25", "", true, {}, night);
    EXPECT_TRUE(idle.lines("AIR").empty()) << idle.out;

    fs::remove_all(home());
    SetUp();
    auto_start(false);
    const SimRun run = simulate("25",
                                "00:01:00 click QXMain.mnu_File_Run\n"
                                "# a second Run while the players play asks first\n"
                                "00:10:00 answer Cancel\n"
                                "00:10:00 click QXMain.mnu_File_Run\n",
                                true, {}, night);
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const auto dialogs = run.lines("DIALOG");
    ASSERT_EQ(dialogs.size(), 1u) << run.out;
    EXPECT_EQ(dialogs[0].substr(0, 31), "DIALOG 2026-11-23 00:12:00.000 ");
    EXPECT_NE(dialogs[0].find("\"UNLOAD WARNING\""), std::string::npos) << dialogs[0];
    EXPECT_EQ(dialogs[0].substr(dialogs[0].size() - 10), " -> Cancel");
    const auto aired = run.lines("AIR");
    ASSERT_FALSE(aired.empty());
    EXPECT_GE(aired.front().substr(4, 19), "2026-11-23 00:03:00");
    EXPECT_GT(aired.back().substr(4, 19), "2026-11-23 00:17:00") << "the Cancel kept it playing";
    expect_aired_what_was_picked(run, clips());
}

TEST_F(Simulator, ABadLineOrAnUnknownControlIsReportedAndNothingRuns) {
    const SimRun bad = simulate("10", "00:00:01 click QXMain.mnu_File_Run\n00:00:02 shout hello\n");
    EXPECT_EQ(bad.code, 2);
    EXPECT_NE(bad.err.find("line 2"), std::string::npos) << bad.err;
    EXPECT_EQ(bad.out, "");

    const SimRun unknown = simulate("10", "\n00:00:05 click Request.RB(99)\n");
    EXPECT_EQ(unknown.code, 2);
    EXPECT_NE(unknown.err.find("line 2: no control Request.RB(99)"), std::string::npos)
        << unknown.err;
    EXPECT_EQ(unknown.out, "");
}

// The engine renders every frame; the same day gives the same lines, and the
// mix written beside it holds the whole run without a gap.
TEST_F(Simulator, TheEngineGivesTheSameRunTwiceAndTheMixHasNoDeadAir) {
    const fs::path mix = folder_.path() / "mix.wav";
    const SimRun first = simulate("20", "", false, mix);
    ASSERT_EQ(first.code, 0) << first.err;
    EXPECT_GE(first.lines("AIR").size(), 4u) << first.out;
    EXPECT_EQ(first.end_count("dead_air_s"), 0) << first.out;
    EXPECT_EQ(fs::file_size(mix), 44u + 20u * 60u * 48'000u * 2u * 4u);

    fs::remove_all(home());
    SetUp();
    const SimRun second = simulate("20", "", false);
    EXPECT_EQ(second.out, first.out);
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
    bool counted = false;
    for (const auto& line : run.lines("DIALOG"))
        counted =
            counted || line.find("\"2 Records were ADDED from this Folder\"") != std::string::npos;
    EXPECT_TRUE(counted) << run.out;
}

}  // namespace
}  // namespace tavora
