#pragma once

// Building blocks of the date helpers, shared by the date text routines.

namespace tavora {

// A date split into its calendar parts, rounded to the second.
struct DateParts {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    int second = 0;
    long long day_number = 0;  // whole days from 1899-12-30, negative before
};

DateParts split_date(double serial);
int days_in_month(int year, int month);

// A date as a point on a straight time line (days, time in the fraction, the
// fraction always counting forward) and back.
double to_linear(double serial);
double from_linear(double linear);

}  // namespace tavora
