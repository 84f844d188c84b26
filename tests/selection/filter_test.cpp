#include <cmath>

#include "selection_fixture.h"

namespace tavora {
namespace {

// One row judged alone: accepted, or turned down (with nothing else to take,
// the run ends starved).
class FilterTest : public SelectionTest {
  protected:
    bool accepted(int slot = 3) {
        picks.clear();
        pick(slot);
        return !picks.empty() && picks.back().way == PickReport::Way::Rules;
    }
};

// Rows judged alone, one after the other, each on its own hour of the
// Wednesday; a row judged is taken out of the schedule before the next.
TEST_F(FilterTest, WindowsAcrossMidnightAreStrictEqualTimesMeanAllDayAndEitherWindowPasses) {
    struct Row {
        const char* name;
        int start1, end1, start2, end2, hour;
        bool accepted;
    };
    const Row rows[] = {
        {"across midnight, at noon", 22, 2, 22, 2, 12, false},
        {"across midnight, at its start", 22, 2, 22, 2, 22, false},
        {"across midnight, inside", 22, 2, 22, 2, 23, true},
        {"across midnight, after it", 22, 2, 22, 2, 1, true},
        {"equal start and end", 9, 9, 6, 7, 14, true},
        {"second window rescues the first", 6, 7, 13, 15, 14, true},
        {"outside both", 6, 7, 8, 9, 14, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        set_now(46092.0 + TimeSerial(row.hour, 0, 0));
        const long id = add({{"Valid Start time", hm(row.start1)},
                             {"Valid End Time", hm(row.end1)},
                             {"Valid Start Time2", hm(row.start2)},
                             {"Valid End Time2", hm(row.end2)}});
        EXPECT_EQ(accepted(), row.accepted);
        set(id, "Schedule Select", Value(0));
    }
}

TEST_F(FilterTest, DayComesFromTheScheduleClockAndANullFlagDoesNotReject) {
    const long id = add({{"Valid Wednesday", Value::boolean(false)}});
    EXPECT_FALSE(accepted());
    station.Clock_Sched = kNow + 1;  // the look-ahead reaches Thursday
    EXPECT_TRUE(accepted());
    set(id, "Valid Thursday", Value());
    set_now(kNow + 0.2);
    EXPECT_TRUE(accepted());
}

TEST_F(FilterTest, MinimumTimeIsStrictAndANullLastPlayedNeverPasses) {
    const long id =
        add({{"Min Time Between Plays", Value::date(0)}, {"Last Played", Value::date(kNow)}});
    EXPECT_FALSE(accepted());
    fake.clock.Advance(1000);
    EXPECT_TRUE(accepted());
    set(id, "Last Played", Value());
    fake.clock.Advance(1000);
    EXPECT_FALSE(accepted());
}

TEST_F(FilterTest, DailyLimitResetsLazilyWhenItsDateHasPassed) {
    const long id = add({{"How Many Today", Value(3)},
                         {"Max Play Day", Value(3)},
                         {"Daily Reset", Value::date(kNow + 0.5)}});
    EXPECT_FALSE(accepted());
    EXPECT_TRUE(has(id, {{"How Many Today", 3}}));
    set(id, "Daily Reset", Value::date(kNow - 0.5));
    EXPECT_TRUE(accepted());
    // Reset to 0, then the play.
    EXPECT_TRUE(has(id, {{"Daily Reset", kNow + 1}, {"How Many Today", 1}}));
}

TEST_F(FilterTest, MonthlyResetSticksWhenTheWeekTurnsTheRowAway) {
    const long id = add({{"How Many This Month", Value(9)},
                         {"Max Month", Value(9)},
                         {"Monthly Reset", Value::date(kNow - 1)},
                         {"How Many This Week", Value(4)},
                         {"Max Play Week", Value(4)},
                         {"Weekly Reset", Value::date(kNow + 3)}});
    EXPECT_FALSE(accepted());
    EXPECT_TRUE(has(id, {{"How Many This Month", 0}, {"Monthly Reset", DateAdd("m", 1, kNow)}}));
}

TEST_F(FilterTest, ChartedRowPlaysToTwiceItsLimitButNotInTheSeventhPlayer) {
    station.Power_On = 1;
    station.Power_Every = 8;
    station.Power_Ctr = 3;
    const long id = add({{"T40", Value(4)},
                         {"How Many Today", Value(5)},
                         {"Max Play Day", Value(3)},
                         {"Daily Reset", Value::date(kNow + 0.5)},
                         {"Length", Value::date(TimeSerial(0, 3, 0))}});
    EXPECT_TRUE(accepted());
    EXPECT_EQ(selection.Two_X, 1);
    EXPECT_EQ(station.Power_Ctr, 8);
    EXPECT_EQ(main.Panel(6).Text, "1");
    set(id, "How Many Today", Value(5));
    station.Ply7_On = 1;
    EXPECT_FALSE(accepted(14));
    set(id, "How Many Today", Value(6));
    EXPECT_FALSE(accepted());
}

TEST_F(FilterTest, RequestIgnoresDaysWindowsAndLimitsAndUsesUpAPriority) {
    const long id = add({{"Sel", Value(60)},
                         {"Schedule Select", Value(0)},
                         {"Valid Wednesday", Value::boolean(false)},
                         {"How Many Today", Value(9)},
                         {"Max Play Day", Value(1)},
                         {"Daily Reset", Value::date(kNow + 1)}});
    EXPECT_TRUE(accepted());
    EXPECT_EQ(picks.back().record_source, "SRequest");
    EXPECT_EQ(field(id, "Sel").number(), 0);
    EXPECT_EQ(station.Req_Open, 1);
}

// The countdown by one is guarded by the driver's request order.
TEST_F(FilterTest, RequestOfARecordPlayedSixTimesTodayLosesAllItsPriority) {
    const long id = add({{"Sel", Value(3)}, {"How Many Today", Value(6)}});
    EXPECT_TRUE(accepted());
    EXPECT_EQ(field(id, "Sel").number(), 0);
}

TEST_F(FilterTest, WebRequestWaitsHalfAnHour) {
    const long id = add({{"Sel", Value(1)},
                         {"Schedule Select", Value(0)},
                         {"AccessDate", Value::date(kNow - TimeSerial(0, 10, 0))}});
    EXPECT_FALSE(accepted());
    EXPECT_EQ(field(id, "Sel").number(), 1);
    set_now(kNow + TimeSerial(0, 21, 0));
    EXPECT_TRUE(accepted());
    EXPECT_EQ(field(id, "Sel").number(), 0);
}

TEST_F(FilterTest, SnipitRunLimitHoldsUntilANormalRowPlays) {
    station.Snip_Max = 1;
    add({{"Source", Value("Snipit")}});
    EXPECT_TRUE(accepted());
    EXPECT_EQ(selection.Snip_Run, 1);
    fake.clock.Advance(2 * 3600 * 1000);
    EXPECT_FALSE(accepted());
    selection.Snip_Run = 0;  // as a normal pick leaves it
    EXPECT_TRUE(accepted());
}

TEST_F(FilterTest, SameFormatSetPassesSystemRecords) {
    station.MFilter = 1;
    selection.Set_Format = "mp3";
    const long wav = add({{"Long title", Value("d:\\music\\a.wav")}});
    EXPECT_FALSE(accepted(2));
    set(wav, "Long title", Value("QXsystem.wav"));
    EXPECT_TRUE(accepted(2));
    set(wav, "Long title", Value("d:\\music\\a.wav"));
    fake.clock.Advance(2 * 3600 * 1000);
    EXPECT_TRUE(accepted(1));  // slot 1 opens a new set
    EXPECT_EQ(selection.Set_Format, "wav");
}

TEST_F(FilterTest, TimedPromoPlaysOnTheLookAheadClockEvenUnscheduled) {
    const long promo = add({{"Source", Value("Timed Promo")},
                            {"Schedule Select", Value(0)},
                            {"Min Time Between Plays", Value::date(TimeSerial(0, 30, 0))},
                            {"Last Played", Value::date(kNow - TimeSerial(0, 40, 0))}});
    station.Clock_Play = kNow - TimeSerial(0, 15, 0);  // frozen by an earlier check
    EXPECT_FALSE(accepted());
    station.Clock_Play = kNow;
    EXPECT_TRUE(accepted());
    EXPECT_EQ(picks.back().rec_id, promo);
    EXPECT_EQ(picks.back().record_source, "Timed Promo");
    EXPECT_EQ(selection.Sel_State, 0);
}

}  // namespace
}  // namespace tavora
