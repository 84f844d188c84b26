#include "runtime/date_text.h"

#include <gtest/gtest.h>

#include "runtime/dates.h"

namespace tavora {
namespace {

const double kMorning = DateSerial(2026, 3, 4) + TimeSerial(9, 5, 7);
const double kEvening = DateSerial(2026, 11, 23) + TimeSerial(21, 40, 0);

TEST(Format, TimePatterns) {
    EXPECT_EQ(Format(kMorning, "hh:mm:ss"), "09:05:07");
    EXPECT_EQ(Format(kEvening, "hh:mm:ss"), "21:40:00");
    EXPECT_EQ(Format(kMorning, "hh:mm"), "09:05");
    EXPECT_EQ(Format(kMorning, "h:mm:ss"), "9:05:07");
    EXPECT_EQ(Format(kMorning, "ss"), "07");
    EXPECT_EQ(Format(kMorning, "hh:mm:ss AMPM"), "09:05:07 AM");
    EXPECT_EQ(Format(kEvening, "hh:mm:ss AMPM"), "09:40:00 PM");
    EXPECT_EQ(Format(0, "hh:mm:ss AMPM"), "12:00:00 AM");
    EXPECT_EQ(Format(0.5, "h:mm am/pm"), "12:00 pm");
    EXPECT_EQ(Format(kEvening, "h A/P"), "9 P");
}

TEST(Format, DatePatterns) {
    EXPECT_EQ(Format(kMorning, "short date"), "3/4/2026");
    EXPECT_EQ(Format(kMorning, "Short Date"), "3/4/2026");
    EXPECT_EQ(Format(kMorning, "dd"), "04");
    EXPECT_EQ(Format(kEvening, "dd"), "23");
    EXPECT_EQ(Format(kMorning, "dddd, mmmm d, yy"), "Wednesday, March 4, 26");
    EXPECT_EQ(Format(kEvening, "short time"), "21:40");
    EXPECT_EQ(Format(kEvening, "long time"), "9:40:00 PM");
}

TEST(Format, MinuteOrMonth) {
    // m after an hour or before a second is the minute, else the month.
    EXPECT_EQ(Format(kMorning, "h:m"), "9:5");
    EXPECT_EQ(Format(kMorning, "mm:ss"), "05:07");
    EXPECT_EQ(Format(kMorning, "m"), "3");
    EXPECT_EQ(Format(kMorning, "\"at\" hh \\h mm"), "at 09 h 05");
}

TEST(Format, NegativeDatesAndRounding) {
    EXPECT_EQ(Format(-1.25, "short date"), "12/29/1899");
    EXPECT_EQ(Format(-1.25, "hh:mm:ss"), "06:00:00");
    const double almost = DateSerial(2024, 12, 31) + 86399.6 / 86400;
    EXPECT_EQ(Format(almost, "short date"), "1/1/2025");
    EXPECT_EQ(Format(almost, "hh:mm:ss"), "00:00:00");
}

TEST(Format, TextThatReadsAsADate) {
    EXPECT_EQ(Format("9:05 pm", "hh:mm:ss AMPM"), "09:05:00 PM");
    EXPECT_EQ(Format("2026-03-04", "short date"), "3/4/2026");
    EXPECT_EQ(Format("soon", "hh:mm"), "soon");
}

TEST(DateText, DefaultForms) {
    EXPECT_EQ(date_text(kEvening), "11/23/2026 9:40:00 PM");
    EXPECT_EQ(date_text(DateSerial(2026, 1, 1)), "1/1/2026");
    EXPECT_EQ(date_text(TimeSerial(0, 0, 1)), "12:00:01 AM");
    EXPECT_EQ(date_text(0), "12:00:00 AM");
    EXPECT_EQ(date_text(-1.75), "12/29/1899 6:00:00 PM");
}

TEST(ParseDateText, TimesAndDatesTheStationStores) {
    EXPECT_EQ(parse_date_text("12:00:00 AM"), 0.0);
    EXPECT_EQ(parse_date_text("11:59:59 PM"), TimeSerial(23, 59, 59));
    EXPECT_EQ(parse_date_text("12:30 PM"), TimeSerial(12, 30, 0));
    EXPECT_EQ(parse_date_text("04:00"), TimeSerial(4, 0, 0));
    EXPECT_EQ(parse_date_text(" 21:40:05 "), TimeSerial(21, 40, 5));
    EXPECT_EQ(parse_date_text("9 pm"), TimeSerial(21, 0, 0));
    EXPECT_EQ(parse_date_text("2026-11-23"), DateSerial(2026, 11, 23));
    EXPECT_EQ(parse_date_text("1/2/99"), DateSerial(1999, 1, 2));
    EXPECT_EQ(parse_date_text("1/2/05"), DateSerial(2005, 1, 2));
}

TEST(ParseDateText, RejectsWhatIsNoDateOrTime) {
    for (const char* text : {"", "5", "abc", "24:00", "12:60", "13:00 PM", "2/30/2024", "13/1/2024",
                             "12:00:00 AM x", "1/2", "10:"}) {
        EXPECT_FALSE(parse_date_text(text).has_value()) << text;
    }
}

TEST(ParseDateText, RoundTripsItsOwnText) {
    for (double d : {kMorning, kEvening, DateSerial(2000, 2, 29), -1.75, TimeSerial(13, 0, 1)}) {
        EXPECT_EQ(parse_date_text(date_text(d)), d) << date_text(d);
    }
}

}  // namespace
}  // namespace tavora
