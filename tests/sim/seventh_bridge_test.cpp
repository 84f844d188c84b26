// A week of the whole demo on probe players. The demo's library is small for
// its play limits, so the rules often starve and the seventh player's slot
// falls to the fallback: kept to songs, it bridges every set change.
#include <regex>
#include <set>

#include "sim_station.h"
#include "store/library.h"
#include "store/recordset.h"

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

    // The RecIDs of the chart lead-ins.
    std::set<long> lead_ins() const {
        std::set<long> ids;
        const auto opened = Library::open(home() / "qx1.mdb", FileKind::Library);
        Recordset rows = OpenRecordset(opened.library, "Recordings1");
        for (; !rows.IsEOF(); rows.MoveNext()) {
            if (rows.Fields("Source").text() == "Top40")
                ids.insert(static_cast<long>(rows.Fields("RecID").number()));
        }
        return ids;
    }
};

TEST_F(DemoWeek, TheSeventhPlayerBridgesEverySetChangeWithoutDeadAir) {
    const SimRun run = simulate(std::to_string(7 * 24 * 60));
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.end_count("dead_air_s"), 0) << run.lines("END")[0];
    EXPECT_GT(run.end_count("fallbacks"), 0) << "the week must starve the rules to test anything";

    const std::set<long> leads = lead_ins();
    ASSERT_EQ(leads.size(), 10u);
    const std::regex seventh(R"(^AIR \S+ \S+ slot=14 player=7 recid=(\d+) )");
    int bridges = 0;
    for (const std::string& line : run.lines("AIR")) {
        std::smatch m;
        if (!std::regex_search(line, m, seventh)) continue;
        ++bridges;
        EXPECT_EQ(leads.count(std::stol(m[1])), 0u) << line;
    }
    EXPECT_GT(bridges, 7 * 50);
}

}  // namespace
}  // namespace tavora
