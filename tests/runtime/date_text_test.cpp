#include "runtime/date_text.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

#include "runtime/dates.h"

namespace tavora {
namespace {

const double kMorning = DateSerial(2026, 3, 4) + TimeSerial(9, 5, 7);
const double kEvening = DateSerial(2026, 11, 23) + TimeSerial(21, 40, 0);

using Patterns = std::initializer_list<std::pair<const char*, const char*>>;

void expect_formats(double date, Patterns patterns) {
    for (const auto& [pattern, text] : patterns)
        EXPECT_EQ(Format(date, pattern), text) << date << " " << pattern;
}

TEST(Format, TimeDateAndLiteralPatterns) {
    // m after an hour or before a second is the minute, else the month.
    expect_formats(kMorning, {{"hh:mm:ss", "09:05:07"},
                              {"hh:mm", "09:05"},
                              {"h:mm:ss", "9:05:07"},
                              {"ss", "07"},
                              {"hh:mm:ss AMPM", "09:05:07 AM"},
                              {"short date", "3/4/2026"},
                              {"Short Date", "3/4/2026"},
                              {"dd", "04"},
                              {"dddd, mmmm d, yy", "Wednesday, March 4, 26"},
                              {"h:m", "9:5"},
                              {"mm:ss", "05:07"},
                              {"m", "3"},
                              {"\"at\" hh \\h mm", "at 09 h 05"}});
    expect_formats(kEvening, {{"hh:mm:ss", "21:40:00"},
                              {"hh:mm:ss AMPM", "09:40:00 PM"},
                              {"h A/P", "9 P"},
                              {"dd", "23"},
                              {"short time", "21:40"},
                              {"long time", "9:40:00 PM"}});
    expect_formats(0, {{"hh:mm:ss AMPM", "12:00:00 AM"}});
    expect_formats(0.5, {{"h:mm am/pm", "12:00 pm"}});
    expect_formats(-1.25, {{"short date", "12/29/1899"}, {"hh:mm:ss", "06:00:00"}});
    expect_formats(DateSerial(2024, 12, 31) + 86399.6 / 86400,
                   {{"short date", "1/1/2025"}, {"hh:mm:ss", "00:00:00"}});
}

TEST(Format, TextThatReadsAsADate) {
    EXPECT_EQ(Format("9:05 pm", "hh:mm:ss AMPM"), "09:05:00 PM");
    EXPECT_EQ(Format("2026-03-04", "short date"), "3/4/2026");
    EXPECT_EQ(Format("soon", "hh:mm"), "soon");
}

TEST(DateText, DefaultFormsRoundTrip) {
    EXPECT_EQ(date_text(kEvening), "11/23/2026 9:40:00 PM");
    EXPECT_EQ(date_text(DateSerial(2026, 1, 1)), "1/1/2026");
    EXPECT_EQ(date_text(TimeSerial(0, 0, 1)), "12:00:01 AM");
    EXPECT_EQ(date_text(0), "12:00:00 AM");
    EXPECT_EQ(date_text(-1.75), "12/29/1899 6:00:00 PM");
    for (double d : {kMorning, kEvening, DateSerial(2000, 2, 29), -1.75, TimeSerial(13, 0, 1)})
        EXPECT_EQ(parse_date_text(date_text(d)), d) << date_text(d);
}

TEST(ParseDateText, TimesAndDatesTheStationStores) {
    const std::pair<const char*, double> cases[] = {{"12:00:00 AM", 0.0},
                                                    {"11:59:59 PM", TimeSerial(23, 59, 59)},
                                                    {"12:30 PM", TimeSerial(12, 30, 0)},
                                                    {"04:00", TimeSerial(4, 0, 0)},
                                                    {" 21:40:05 ", TimeSerial(21, 40, 5)},
                                                    {"9 pm", TimeSerial(21, 0, 0)},
                                                    {"2026-11-23", DateSerial(2026, 11, 23)},
                                                    {"1/2/99", DateSerial(1999, 1, 2)},
                                                    {"1/2/05", DateSerial(2005, 1, 2)}};
    for (const auto& [text, date] : cases)
        EXPECT_EQ(parse_date_text(text), date) << text;
    for (const char* text : {"", "5", "abc", "24:00", "12:60", "13:00 PM", "2/30/2024", "13/1/2024",
                             "12:00:00 AM x", "1/2", "10:"})
        EXPECT_FALSE(parse_date_text(text).has_value()) << text;
}

}  // namespace
}  // namespace tavora
