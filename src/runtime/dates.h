#pragma once

#include <string_view>

// Dates are doubles: whole days since 1899-12-30, the time of day in the
// fraction. A negative date keeps its day in the part toward zero and its
// time in the absolute fraction: -1.25 is 1899-12-29 06:00.

namespace tavora {

// Out-of-range months and days roll over: month 13 is January of the next
// year, day 0 the last day of the month before.
double DateSerial(int year, int month, int day);
// Fraction of a day; out-of-range parts roll over into whole days.
double TimeSerial(int hour, int minute, int second);

int Year(double date);
int Month(double date);
int Day(double date);
int Hour(double date);
int Minute(double date);
int Second(double date);
// Sunday is 1, Saturday 7.
int Weekday(double date);

// The day alone (time 00:00) and the time alone (day 1899-12-30).
double DateValueOf(double date);
double TimeValueOf(double date);

// Units "s" (seconds), "n" (minutes), "h" (hours), "d" (days), "ww" (weeks),
// "m" (months), "yyyy" (years); the unit is not case-sensitive. The number of
// units is rounded half to even, as a whole count. A month or year added
// keeps the day, or takes the last day of a shorter month, and keeps the time
// of day. An unknown unit leaves the date as it is.
double DateAdd(std::string_view unit, double number, double date);

}  // namespace tavora
