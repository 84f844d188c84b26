// The programming windows driven by a script, as an operator at the
// station would: what they change shows in what the station picks.
#include <map>
#include <regex>
#include <string>

#include "sim_station.h"
#include "store/statement.h"

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

// Half the library is Jazz and half Mellow, each with a schedule entry of its
// own in place of "Always".
class Weights : public Programming {
  protected:
    void SetUp() override {
        Programming::SetUp();
        // Enough songs that the rules seldom starve: a pick by the fallback
        // starts a new weight cycle.
        ASSERT_EQ(grow_demo_library(home(), 600), "");
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        ASSERT_TRUE(library);
        Connection& db = library->connection();
        ASSERT_TRUE(
            db.exec("UPDATE Recordings1 SET Speed = CASE WHEN RecID % 2 = 0 THEN 'Jazz' "
                    "ELSE 'Mellow' END WHERE Source IS NULL"));
        ASSERT_TRUE(
            db.exec("UPDATE Schedule SET Type1 = 'Mellow', Name = 'Mellow' "
                    "WHERE Name = 'Always'"));
        Statement copy = db.prepare(
            "INSERT INTO Schedule (Name, Power, [Use PL], DOMALL, DOM1, Override, DOWALL, Mo, "
            "Tu, We, Th, Fr, Sa, Su, Type1, STime, ETime, [Run Now]) SELECT 'Jazz', Power, [Use "
            "PL], DOMALL, DOM1, Override, DOWALL, Mo, Tu, We, Th, Fr, Sa, Su, 'Jazz', STime, "
            "ETime, [Run Now] FROM Schedule WHERE Name = 'Mellow'");
        ASSERT_EQ(copy.step(), Statement::Step::Done);
    }

    // The operator enters both categories on the category screen.
    // A count of 99 leaves a category unweighted.
    static std::string categories(const std::string& jazz_weight, const std::string& mellow_weight,
                                  const std::string& count) {
        std::string script = "00:00:01 click QXMain.mnu_Options_AutoRewind\n";
        for (const auto& [name, weight] :
             {std::pair{"Jazz", jazz_weight}, std::pair{"Mellow", mellow_weight}}) {
            script +=
                "00:00:01 click frmTypeLookup.cmdAdd\n"
                "00:00:01 set frmTypeLookup.txtType " +
                std::string(name) + "\n00:00:01 set frmTypeLookup.txtWeight " + weight +
                "\n00:00:01 set frmTypeLookup.txtCount " + count +
                "\n00:00:01 click frmTypeLookup.cmdUpdate\n";
        }
        return script;
    }

    // Songs picked by the schedule per category, from the run's PICK lines.
    std::map<std::string, int> picks_by_category(const SimRun& run) {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        std::map<std::string, int> picks;
        const std::regex pick(R"(^PICK \S+ \S+ slot=\d+ recid=(\d+) source=NormSel$)");
        for (const std::string& line : run.lines("PICK")) {
            std::smatch m;
            if (!std::regex_match(line, m, pick)) continue;
            Statement speed =
                library->connection().prepare("SELECT Speed FROM Recordings1 WHERE RecID = ?");
            speed.bind_int64(1, std::stoll(m[1]));
            if (speed.step() == Statement::Step::Row) ++picks[speed.column_text(0)];
        }
        return picks;
    }
};

// With both unweighted, the two halves play about alike. Weighted 2 and 20, Jazz
// drops out once it has its two until Mellow has had its twenty; the check
// comes once a set, so a set may overshoot by its own length.
TEST_F(Weights, TheLimiterHoldsACategoryToItsWeightInACycle) {
    const SimRun free = simulate("360", categories("2", "20", "99"));
    ASSERT_EQ(free.code, 0) << free.err;
    const auto alike = picks_by_category(free);
    ASSERT_GT(alike.at("Jazz") + alike.at("Mellow"), 60) << free.out;
    EXPECT_GT(alike.at("Jazz") * 2, alike.at("Mellow"));

    std::filesystem::remove_all(home());
    SetUp();
    const SimRun weighted = simulate("360", categories("2", "20", "0"));
    ASSERT_EQ(weighted.code, 0) << weighted.err;
    const auto limited = picks_by_category(weighted);
    ASSERT_GT(limited.at("Mellow"), 60) << weighted.out;
    EXPECT_GT(limited.at("Jazz"), 0);
    EXPECT_LT(limited.at("Jazz") * 3, limited.at("Mellow"));
}

}  // namespace
}  // namespace tavora
