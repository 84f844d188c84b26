// A week of the whole demo on probe players. The demo's library is small for
// its play limits, so the rules often starve and the seventh player's slot
// falls to the fallback: kept to songs, it bridges every set change.
#include <algorithm>

#include "sim_station.h"

namespace tavora {
namespace {

class DemoWeek : public SimStation {
  protected:
    static void SetUpTestSuite() {
        master_ = std::make_unique<TestFolder>();
        // The probe players only time the files: one quick format will do.
        DemoOptions options;
        options.format = ".flac";
        options.rate = 8000;
        const DemoReport demo = make_demo_library(master_->path(), kStart - 1, options);
        ASSERT_EQ(demo.error, "");
        ASSERT_EQ(demo.rest, nullptr);
    }
};

TEST_F(DemoWeek, TheSeventhPlayerBridgesEverySetChangeWithoutDeadAir) {
    const SimRun run = simulate(std::to_string(7 * 24 * 60));
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.end("dead_air_s"), 0) << run.lines("END")[0];
    EXPECT_GT(run.end("fallbacks"), 0) << "the week must starve the rules to test anything";

    const auto leads = query("SELECT RecID FROM Recordings1 WHERE Source = 'Top40'");
    ASSERT_EQ(leads.size(), 10u);
    const auto bridges = holding(run.lines("AIR"), " slot=14 player=7 ");
    EXPECT_GT(bridges.size(), 7u * 50);
    for (const std::string& line : bridges)
        EXPECT_EQ(std::count(leads.begin(), leads.end(), field(line, "recid")), 0) << line;
}

}  // namespace
}  // namespace tavora
