// A library gone bad behind the station's back: broken and silent files
// among the songs, hours on the real engine, and no stretch of dead air
// longer than the watchdog's hold time plus one tick. The day of the shipped
// demo is the simulator benchmark's.
#include "broken_files.h"
#include "sim_station.h"

namespace tavora {
namespace {

constexpr double kHold = 8;
constexpr double kTick = 0.3;

using BrokenLibrarySim = SimStation;

TEST_F(BrokenLibrarySim, HoursOfBrokenAndSilentFilesHaveNoDeadAirBeyondTheHold) {
    const BrokenRows broken = break_songs(home(), 1);
    ASSERT_EQ(broken.error, "");
    const SimRun run = simulate("150", "", false);
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_GT(run.end("longest_dead_air_s"), kHold - kTick) << run.lines("END")[0];
    EXPECT_LE(run.end("longest_dead_air_s"), kHold + kTick) << run.lines("END")[0];

    // Every broken row came up in the run.
    for (const long long id : broken.rec_ids)
        EXPECT_FALSE(with_recid(run.lines("PICK"), std::to_string(id)).empty()) << id;
    // The silent ones aired, and each was heard as silence and skipped.
    for (const Breakage kind : {Breakage::Silent, Breakage::SilentMiddle}) {
        const long long id = broken.rec_ids[static_cast<std::size_t>(kind)];
        const auto aired = with_recid(run.lines("AIR"), std::to_string(id));
        ASSERT_FALSE(aired.empty()) << broken_files::name_of(kind);
        const std::string named = " > " + title_of(aired[0]);
        EXPECT_EQ(holding(play_log("DEAD AIR at:"), named).size(), aired.size()) << named;
        EXPECT_EQ(holding(play_log("DEAD AIR SKIP at:"), named).size(), aired.size()) << named;
    }
    // Each alarm names the player and the hold, and is skipped and recovered
    // from, in that order: no skip brought on another silence.
    std::string alarms, expected;
    for (const std::string& line : play_log("DEAD AIR")) {
        alarms += line.substr(9, line.find_first_of(": ", 9) - 9) + " ";
        if (line.rfind("DEAD AIR at:", 0) == 0) {
            expected += "at SKIP RECOVERED ";
            EXPECT_NE(line.find("silent for 8 s - QX"), std::string::npos) << line;
        }
    }
    EXPECT_EQ(alarms, expected);
    // The noise file under a music name was refused by its player, and the
    // set went on.
    const auto refused = holding(run.lines("DIALOG"), "No sound in ");
    ASSERT_EQ(refused.size(), 1u) << run.out;
    EXPECT_NE(refused[0].find("garbage 0.mp3"), std::string::npos) << refused[0];
}

}  // namespace
}  // namespace tavora
