// The programming windows driven by a script, as an operator at the
// station would: what they change shows in what the station picks.
#include <map>

#include "sim_station.h"

namespace tavora {
namespace {

using Programming = SimStation;

// Picks through the fallback at or after a clock time of the run.
long fallbacks_from(const SimRun& run, const std::string& from) {
    long n = 0;
    for (const std::string& line : run.lines("PICK"))
        n += time_of(line) >= from && field(line, "source") == "recordings1";
    return n;
}

// The demo's songs run under the "Always" entry. A click in the schedule
// grid's first column switches it off: from the next load on, nothing is
// scheduled and only the fallback plays.
TEST_F(Programming, AGridClickStopsTheScheduleAtTheNextLoad) {
    const SimRun run = simulate("60",
                                "00:20:00 click QXMain.mnu_View_Schedule1\n"
                                "00:20:01 click frmSchedule1.DataGrid1(0)\n");
    const long all = fallbacks_from(run, "2026-11-23 14:00:00.000");
    EXPECT_EQ(all, fallbacks_from(run, "2026-11-23 14:20:01.000"))
        << "no fallback before the click";
    EXPECT_GE(all, 3) << run.out;
    EXPECT_EQ(run.end("fallbacks"), all);
}

// Half the library is Jazz and half Mellow, each with a schedule entry of its
// own in place of "Always".
class Weights : public Programming {
  protected:
    void SetUp() override {
        Programming::SetUp();
        // Enough songs that the rules seldom starve: a pick by the fallback
        // starts a new weight cycle.
        ASSERT_EQ(grow_demo_library(home(), 600), "");
        query(
            "UPDATE Recordings1 SET Speed = CASE WHEN RecID % 2 = 0 THEN 'Jazz' "
            "ELSE 'Mellow' END WHERE Source IS NULL");
        query("UPDATE Schedule SET Type1 = 'Mellow', Name = 'Mellow' WHERE Name = 'Always'");
        query(
            "INSERT INTO Schedule (Name, Power, [Use PL], DOMALL, DOM1, Override, DOWALL, Mo, "
            "Tu, We, Th, Fr, Sa, Su, Type1, STime, ETime, [Run Now]) SELECT 'Jazz', Power, [Use "
            "PL], DOMALL, DOM1, Override, DOWALL, Mo, Tu, We, Th, Fr, Sa, Su, 'Jazz', STime, "
            "ETime, [Run Now] FROM Schedule WHERE Name = 'Mellow'");
    }

    // The operator enters both categories on the category screen, weighted
    // 2 and 20. A count of 99 leaves a category unweighted.
    static std::string categories(const std::string& count) {
        std::string script = "00:00:01 click QXMain.mnu_Options_AutoRewind\n";
        for (const auto& [name, weight] : {std::pair{"Jazz", "2"}, std::pair{"Mellow", "20"}}) {
            script += "00:00:01 click frmTypeLookup.cmdAdd\n00:00:01 set frmTypeLookup.txtType " +
                      std::string(name) + "\n00:00:01 set frmTypeLookup.txtWeight " + weight +
                      "\n00:00:01 set frmTypeLookup.txtCount " + count +
                      "\n00:00:01 click frmTypeLookup.cmdUpdate\n";
        }
        return script;
    }

    // Songs picked by the schedule per category, from the run's PICK lines.
    std::map<std::string, int> picks_by_category(const SimRun& run) {
        std::map<std::string, int> picks;
        for (const std::string& line : holding(run.lines("PICK"), " source=NormSel"))
            for (const auto& speed :
                 query("SELECT Speed FROM Recordings1 WHERE RecID = ?", {field(line, "recid")}))
                ++picks[speed];
        return picks;
    }
};

// With both unweighted, the two halves play about alike. Weighted 2 and 20, Jazz
// drops out once it has its two until Mellow has had its twenty; the check
// comes once a set, so a set may overshoot by its own length.
TEST_F(Weights, TheLimiterHoldsACategoryToItsWeightInACycle) {
    const SimRun free = simulate("360", categories("99"));
    const auto alike = picks_by_category(free);
    ASSERT_GT(alike.at("Jazz") + alike.at("Mellow"), 60) << free.out;
    EXPECT_GT(alike.at("Jazz") * 2, alike.at("Mellow"));

    restart();
    const SimRun weighted = simulate("360", categories("0"));
    const auto limited = picks_by_category(weighted);
    ASSERT_GT(limited.at("Mellow"), 60) << weighted.out;
    EXPECT_GT(limited.at("Jazz"), 0);
    EXPECT_LT(limited.at("Jazz") * 3, limited.at("Mellow"));
}

}  // namespace
}  // namespace tavora
