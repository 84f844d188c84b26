// A library gone bad behind the station's back: broken and silent files
// among the songs, hours on the real engine, and no stretch of dead air
// longer than the watchdog's hold time plus one tick. The day of the shipped
// demo is the simulator benchmark's.
#include <cstdio>
#include <fstream>

#include "broken_files.h"
#include "sim_station.h"

namespace tavora {
namespace {

constexpr double kHold = 8;
constexpr double kTick = 0.3;

class BrokenLibrarySim : public SimStation {
  protected:
    // Lines of the play log that start with `start`.
    std::vector<std::string> play_log(const std::string& start) const {
        std::vector<std::string> found;
        std::ifstream in(home() / "qxl1123.log");
        for (std::string line; std::getline(in, line);)
            if (line.rfind(start, 0) == 0) found.push_back(line);
        return found;
    }
    static std::vector<std::string> lines_of(const std::vector<std::string>& lines,
                                             const std::string& part) {
        std::vector<std::string> found;
        for (const auto& line : lines)
            if (line.find(part) != std::string::npos) found.push_back(line);
        return found;
    }
};

TEST_F(BrokenLibrarySim, HoursOfBrokenAndSilentFilesHaveNoDeadAirBeyondTheHold) {
    const BrokenRows broken = break_songs(home(), 1);
    ASSERT_EQ(broken.error, "");
    const SimRun run = simulate("150", "", false);
    ASSERT_EQ(run.code, 0) << run.err;
    const std::string end = run.lines("END").at(0);
    double longest = -1;
    std::sscanf(end.substr(end.find("longest_dead_air_s=")).c_str(), "longest_dead_air_s=%lf",
                &longest);
    EXPECT_GT(longest, kHold - kTick) << end;
    EXPECT_LE(longest, kHold + kTick) << end;

    // Every broken row came up in the run.
    const auto picks = run.lines("PICK");
    for (const long long id : broken.rec_ids)
        EXPECT_FALSE(lines_of(picks, " recid=" + std::to_string(id) + " ").empty()) << id;
    // The silent ones aired, and each was heard as silence and skipped.
    for (const Breakage kind : {Breakage::Silent, Breakage::SilentMiddle}) {
        const long long id = broken.rec_ids[static_cast<std::size_t>(kind)];
        const auto aired = lines_of(run.lines("AIR"), " recid=" + std::to_string(id) + " ");
        ASSERT_FALSE(aired.empty()) << broken_files::name_of(kind);
        const std::string title = aired[0].substr(aired[0].find('"'));
        const std::string named = " > " + title.substr(1, title.size() - 2);
        EXPECT_EQ(lines_of(play_log("DEAD AIR at:"), named).size(), aired.size()) << named;
        EXPECT_EQ(lines_of(play_log("DEAD AIR SKIP at:"), named).size(), aired.size()) << named;
    }
    // The noise file under a music name was refused by its player, and the
    // set went on.
    const auto refused = lines_of(run.lines("DIALOG"), "No sound in ");
    ASSERT_EQ(refused.size(), 1u) << run.out;
    EXPECT_NE(refused[0].find("garbage 0.mp3"), std::string::npos) << refused[0];
    // Each alarm ended with the air back.
    EXPECT_EQ(play_log("DEAD AIR RECOVERED at:").size(), play_log("DEAD AIR at:").size());
}

}  // namespace
}  // namespace tavora
