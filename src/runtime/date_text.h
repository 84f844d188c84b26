#pragma once

#include <optional>
#include <string>
#include <string_view>

// Date and time values as text, in one fixed United States form so that a
// station reads and writes the same text on every machine:
//   short date    "m/d/yyyy"      11/5/2026
//   long time     "h:mm:ss AM"    9:05:07 PM
//   short time    "hh:mm"         21:05
//   default text  short date, a blank and long time; only the date when the
//                 time is midnight, only the time on day 0 (1899-12-30).

namespace tavora {

// Formats a date with a named form ("general date", "short date", "long
// time", "short time"; any case) or a pattern built from:
//   h hh       hour (12-hour when the pattern has AM/PM, AMPM or A/P)
//   n nn       minute; m and mm are minutes too right after an hour or
//              right before a second, else the month
//   s ss       second
//   d dd       day of the month;  ddd dddd  day name
//   m mm       month;             mmm mmmm  month name
//   yy yyyy    year
//   AM/PM am/pm A/P a/p AMPM      the half of the day
//   \x or "text"                  literal text
// Other characters are copied as they are.
std::string Format(double date, std::string_view pattern);
// A text that reads as a date (see parse_date_text) is formatted as that
// date; any other text comes back unchanged.
std::string Format(std::string_view text, std::string_view pattern);

// The default text of a date value.
std::string date_text(double date);

// The time of an event line: "yyyy-mm-dd hh:mm:ss.fff", whole milliseconds.
std::string event_time(double date);

// Reads the date and time texts the station stores and shows: an optional
// date ("m/d/yyyy", "m/d/yy" or "yyyy-mm-dd") followed or replaced by a time
// ("h:mm", "h:mm:ss", either with " AM"/" PM", or "h AM"). Blanks around the
// text are ignored. Nothing when the text is not a valid date or time.
std::optional<double> parse_date_text(std::string_view text);

}  // namespace tavora
