#include "runtime/dates.h"

#include <gtest/gtest.h>

namespace tavora {
namespace {

TEST(DateSerial, KnownDaysRoundTrip) {
    const struct {
        int y, m, d;
        double serial;
    } cases[] = {{1899, 12, 30, 0},   {1899, 12, 31, 1},     {1900, 1, 1, 2},
                 {1900, 2, 28, 60},   {1900, 3, 1, 61},      {2000, 2, 29, 36585},
                 {2000, 3, 1, 36586}, {1999, 12, 31, 36525}, {2026, 11, 23, 46349},
                 {1899, 12, 29, -1},  {1800, 1, 1, -36522}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.serial);
        EXPECT_EQ(DateSerial(c.y, c.m, c.d), c.serial);
        EXPECT_EQ(Year(c.serial), c.y);
        EXPECT_EQ(Month(c.serial), c.m);
        EXPECT_EQ(Day(c.serial), c.d);
    }
}

TEST(DateSerial, OutOfRangePartsRollOverAndTimeIsAFractionOfDay) {
    EXPECT_EQ(DateSerial(2024, 13, 1), DateSerial(2025, 1, 1));
    EXPECT_EQ(DateSerial(2024, 3, 0), DateSerial(2024, 2, 29));
    EXPECT_EQ(DateSerial(2023, 2, 29), DateSerial(2023, 3, 1));
    EXPECT_DOUBLE_EQ(TimeSerial(0, 30, 0), 1.0 / 48);
    const double t = TimeSerial(23, 59, 59);
    EXPECT_EQ(Hour(t) * 10000 + Minute(t) * 100 + Second(t), 235959);
    EXPECT_EQ(Day(TimeSerial(25, 0, 0)), 31);
}

TEST(NegativeDates, DayTowardZeroTimeAbsoluteAndWeekdaySundayIsOne) {
    // -1.25: the day is 1899-12-29, the time 06:00.
    EXPECT_EQ(Day(-1.25), 29);
    EXPECT_EQ(Month(-1.25), 12);
    EXPECT_EQ(Hour(-1.25), 6);
    // Half a day after 1899-12-29 06:00 is 18:00 of the same day.
    EXPECT_DOUBLE_EQ(DateAdd("h", 12, -1.25), -1.75);
    // Crossing day 0 backwards from noon of day 0.
    EXPECT_DOUBLE_EQ(DateAdd("h", -18, 0.5), -1.75);
    EXPECT_DOUBLE_EQ(DateAdd("h", 18, -1.75), 0.5);
    EXPECT_DOUBLE_EQ(DateValueOf(-1.75), -1);
    EXPECT_DOUBLE_EQ(TimeValueOf(-1.75), 0.75);
    EXPECT_EQ(Weekday(0), 7);                         // 1899-12-30, a Saturday
    EXPECT_EQ(Weekday(DateSerial(2026, 11, 22)), 1);  // Sunday
    EXPECT_EQ(Weekday(DateSerial(2000, 2, 29)), 3);   // Tuesday
    EXPECT_EQ(Weekday(-1), 6);                        // Friday 1899-12-29
    EXPECT_EQ(Weekday(-7.5), 7);
}

TEST(DateAdd, MonthKeepsOrClampsTheDaySecondsDaysWeeksAdd) {
    const double t = TimeSerial(13, 45, 10);
    EXPECT_EQ(DateAdd("m", 1, DateSerial(2025, 1, 31) + t), DateSerial(2025, 2, 28) + t);
    EXPECT_EQ(DateAdd("m", 1, DateSerial(2024, 1, 31)), DateSerial(2024, 2, 29));
    EXPECT_EQ(DateAdd("m", 2, DateSerial(2024, 1, 31)), DateSerial(2024, 3, 31));
    EXPECT_EQ(DateAdd("m", -1, DateSerial(2024, 3, 31)), DateSerial(2024, 2, 29));
    EXPECT_EQ(DateAdd("m", -12, DateSerial(2024, 2, 29)), DateSerial(2023, 2, 28));
    EXPECT_EQ(DateAdd("M", 1, DateSerial(2024, 4, 30)), DateSerial(2024, 5, 30));
    const double d = DateSerial(2024, 12, 31) + TimeSerial(23, 59, 30);
    const double next = DateAdd("s", 45, d);
    EXPECT_EQ(Year(next), 2025);
    EXPECT_EQ(Second(next), 15);
    EXPECT_EQ(DateAdd("d", 1, d), d + 1);
    EXPECT_EQ(DateAdd("ww", -2, d), d - 14);
    EXPECT_EQ(DateAdd("?", 5, d), d);
}

}  // namespace
}  // namespace tavora
