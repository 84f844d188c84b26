#include <map>
#include <random>

#include "selection_fixture.h"

namespace tavora {
namespace {

// Generated libraries and states: whatever the mix, a row accepted by the
// rotation obeys the window, day and limit rules it was judged by, and an
// unscheduled row reaches a slot only as a timed promo, a request or
// through the fallback. Reset dates lie ahead and power play is off, so no
// rule may lift a limit.
class PropertyTest : public SelectionTest {
  protected:
    using Row = std::map<std::string, Value>;

    void generate(std::mt19937& random) {
        auto chance = [&](int percent) { return static_cast<int>(random() % 100) < percent; };
        auto hour = [&] { return Value::date(TimeSerial(static_cast<int>(random() % 24), 0, 0)); };
        for (int i = 0; i < 30; ++i) {
            const Value start = hour();
            add({{"Valid Start time", start},
                 {"Valid End Time", chance(10) ? start : hour()},
                 {"Valid Start Time2", hour()},
                 {"Valid End Time2", hour()},
                 {"Valid Wednesday", chance(10) ? Value() : Value::boolean(chance(70))},
                 {"How Many Today", Value(static_cast<int>(random() % 4))},
                 {"Max Play Day", Value(static_cast<int>(random() % 4))},
                 {"How Many This Week", Value(static_cast<int>(random() % 4))},
                 {"Max Play Week", Value(static_cast<int>(random() % 6))},
                 {"Daily Reset", Value::date(kNow + 1 + random() % 30)},
                 {"Weekly Reset", Value::date(kNow + 1 + random() % 30)},
                 {"Monthly Reset", Value::date(kNow + 1 + random() % 30)},
                 {"Schedule Select", Value(chance(60) ? 1 : 0)},
                 {"Source", chance(10) ? Value("Timed Promo") : Value()},
                 {"Sel", Value(chance(15) ? static_cast<int>(1 + random() % 3) : 0)},
                 {"Min Time Between Plays",
                  Value::date(TimeSerial(0, static_cast<int>(random() % 120), 0))},
                 {"Last Played", Value::date(kNow - (random() % 2000) / 1000.0)}});
        }
    }

    std::map<long, Row> snapshot() {
        std::map<long, Row> rows;
        Recordset table = OpenRecordset(library, "Recordings1");
        for (; !table.IsEOF(); table.MoveNext()) {
            Row& row = rows[static_cast<long>(table.Fields("RecID").number())];
            for (int i = 0; i < table.field_count(); ++i)
                row[table.field_name(i)] = table.Fields(i);
        }
        return rows;
    }

    static bool in_window(const Value& start, const Value& end, double t) {
        const double s = start.number(), e = end.number();
        if (s == e) return true;
        return s < e ? (s < t && t < e) : (t > s || t < e);
    }

    void check_rotation_pick(Row& row, double now) {
        const double t = TimeValueOf(now);
        EXPECT_TRUE(in_window(row["Valid Start time"], row["Valid End Time"], t) ||
                    in_window(row["Valid Start Time2"], row["Valid End Time2"], t));
        EXPECT_FALSE(row["Valid Wednesday"].same(Value::boolean(false)));
        EXPECT_LT(row["How Many Today"].number(), row["Max Play Day"].number());
        EXPECT_LT(row["How Many This Week"].number(), row["Max Play Week"].number());
        EXPECT_GT(now - row["Last Played"].number(), row["Min Time Between Plays"].number());
        EXPECT_GT(row["Schedule Select"].number(), 0);
    }
};

TEST_F(PropertyTest, RotationPicksObeyTheirRulesAndUnscheduledRowsComeOnlyAnotherWay) {
    int rotation = 0;
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        library->connection().exec("DELETE FROM Recordings1");
        library->note_write();
        set_now(46092.0 + TimeSerial(static_cast<int>(random() % 24), 0, 0));
        generate(random);
        for (int run = 0; run < 8; ++run) {
            fake.clock.Advance(4 * 60 * 1000);
            station.Clock_Play = station.Clock_Sched = now();
            std::map<long, Row> before = snapshot();
            PickReport report;
            selection.hooks.on_pick = [&](const PickReport& made) { report = made; };
            pick(2 + run % 4);
            if (report.way == PickReport::Way::Starved) continue;
            Row& row = before[report.rec_id];
            const bool other_way = report.way == PickReport::Way::Fallback ||
                                   report.record_source == "Timed Promo" ||
                                   report.record_source == "SRequest";
            EXPECT_TRUE(other_way || row["Schedule Select"].number() != 0);
            if (!other_way) {
                ++rotation;
                check_rotation_pick(row, now());
            }
        }
    }
    EXPECT_GT(rotation, 10);  // the rule checks above did run
}

}  // namespace
}  // namespace tavora
