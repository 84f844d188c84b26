// The programming windows driven by a script, as an operator at the
// station would: what they change shows in what the station picks.
#include <string>

#include "sim_station.h"

namespace tavora {
namespace {

using Programming = SimStation;

// Picks through the fallback at or after a clock time of the run.
long fallbacks_from(const SimRun& run, const std::string& from) {
    long n = 0;
    for (const std::string& line : run.lines("PICK")) {
        const std::string time = line.substr(5, 23);
        if (time >= from && line.find("source=recordings1") != std::string::npos) ++n;
    }
    return n;
}

// The demo's songs run under the "Always" entry. A click in the schedule
// grid's first column switches it off: from the next load on, nothing is
// scheduled and only the fallback plays.
TEST_F(Programming, AGridClickStopsTheScheduleAtTheNextLoad) {
    const SimRun run = simulate("60",
                                "00:20:00 click QXMain.mnu_View_Schedule1\n"
                                "00:20:01 click frmSchedule1.DataGrid1(0)\n");
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(fallbacks_from(run, "2026-11-23 14:00:00.000"),
              fallbacks_from(run, "2026-11-23 14:20:01.000"))
        << "no fallback before the click";
    EXPECT_GE(fallbacks_from(run, "2026-11-23 14:20:01.000"), 3) << run.out;
    EXPECT_EQ(run.end_count("fallbacks"), fallbacks_from(run, "2026-11-23 14:00:00.000"));
}

}  // namespace
}  // namespace tavora
