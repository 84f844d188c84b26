#include "runtime/dates.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "runtime/convert.h"
#include "runtime/date_parts.h"

namespace tavora {

namespace {

constexpr long long kSecondsPerDay = 86400;

// Days from 1970-01-01 of a proleptic Gregorian date (month 1 to 12).
constexpr long long days_from_civil(long long y, int m, int d) {
    y -= m <= 2;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const long long yoe = y - era * 400;
    const long long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const long long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

constexpr long long kEpoch = days_from_civil(1899, 12, 30);

bool is_leap(long long y) {
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

}  // namespace

double to_linear(double serial) {
    if (serial >= 0) return serial;
    double day = std::trunc(serial);
    return day + (day - serial);
}

double from_linear(double linear) {
    double day = std::floor(linear);
    if (day >= 0) return linear;
    return day - (linear - day);
}

DateParts split_date(double serial) {
    double seconds = std::nearbyint(to_linear(serial) * kSecondsPerDay);
    long long total = static_cast<long long>(seconds);
    long long day = total / kSecondsPerDay;
    long long sec = total % kSecondsPerDay;
    if (sec < 0) {
        sec += kSecondsPerDay;
        --day;
    }
    // Civil date from days since 1970-01-01.
    const long long z = day + kEpoch + 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const long long doe = z - era * 146097;
    const long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long long mp = (5 * doy + 2) / 153;
    DateParts p;
    p.day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    p.month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    p.year = static_cast<int>(yoe + era * 400 + (p.month <= 2));
    p.day_number = day;
    p.hour = static_cast<int>(sec / 3600);
    p.minute = static_cast<int>(sec / 60 % 60);
    p.second = static_cast<int>(sec % 60);
    return p;
}

int days_in_month(int year, int month) {
    static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && is_leap(year) ? 29 : kDays[month - 1];
}

double DateSerial(int year, int month, int day) {
    long long y = year + (month - 1) / 12;
    int m = (month - 1) % 12;
    if (m < 0) {
        m += 12;
        --y;
    }
    long long days = days_from_civil(y, m + 1, 1) - kEpoch + (day - 1);
    return static_cast<double>(days);
}

double TimeSerial(int hour, int minute, int second) {
    long long seconds = 3600LL * hour + 60LL * minute + second;
    return from_linear(static_cast<double>(seconds) / kSecondsPerDay);
}

int Year(double date) {
    return split_date(date).year;
}
int Month(double date) {
    return split_date(date).month;
}
int Day(double date) {
    return split_date(date).day;
}
int Hour(double date) {
    return split_date(date).hour;
}
int Minute(double date) {
    return split_date(date).minute;
}
int Second(double date) {
    return split_date(date).second;
}

int Weekday(double date) {
    // 1899-12-30 was a Saturday.
    long long w = (split_date(date).day_number + 6) % 7;
    if (w < 0) w += 7;
    return static_cast<int>(w) + 1;
}

double DateValueOf(double date) {
    return static_cast<double>(split_date(date).day_number);
}

double TimeValueOf(double date) {
    DateParts p = split_date(date);
    return (3600.0 * p.hour + 60.0 * p.minute + p.second) / kSecondsPerDay;
}

namespace {

std::string lower(std::string_view s) {
    std::string out(s);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

double add_months(double date, long long months) {
    DateParts p = split_date(date);
    long long index = static_cast<long long>(p.year) * 12 + (p.month - 1) + months;
    long long year = index / 12;
    int month = static_cast<int>(index % 12);
    if (month < 0) {
        month += 12;
        --year;
    }
    ++month;
    int day = std::min(p.day, days_in_month(static_cast<int>(year), month));
    double day_serial = DateSerial(static_cast<int>(year), month, day);
    return from_linear(day_serial + (to_linear(date) - std::floor(to_linear(date))));
}

}  // namespace

double DateAdd(std::string_view unit, double number, double date) {
    const std::string u = lower(unit);
    const long long n = CLng(number);
    auto plus_seconds = [&](long long seconds) {
        return from_linear(to_linear(date) + static_cast<double>(seconds) / kSecondsPerDay);
    };
    if (u == "s") return plus_seconds(n);
    if (u == "n") return plus_seconds(n * 60);
    if (u == "h") return plus_seconds(n * 3600);
    if (u == "d") return from_linear(to_linear(date) + static_cast<double>(n));
    if (u == "ww") return from_linear(to_linear(date) + static_cast<double>(7 * n));
    if (u == "m") return add_months(date, n);
    if (u == "yyyy") return add_months(date, 12 * n);
    return date;
}

}  // namespace tavora
