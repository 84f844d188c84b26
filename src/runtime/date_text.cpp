#include "runtime/date_text.h"

#include <cctype>
#include <cmath>
#include <cstdio>

#include "runtime/date_parts.h"
#include "runtime/dates.h"

namespace tavora {

namespace {

const char* const kMonthNames[] = {"January",   "February", "March",    "April",
                                   "May",       "June",     "July",     "August",
                                   "September", "October",  "November", "December"};
const char* const kDayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                 "Thursday", "Friday", "Saturday"};

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool starts_nocase(std::string_view text, std::size_t at, std::string_view word) {
    if (text.size() - at < word.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (lower(text[at + i]) != lower(word[i])) return false;
    }
    return true;
}

bool equals_nocase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && starts_nocase(a, 0, b);
}

std::string number(int value, int width) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%0*d", width, value);
    return buf;
}

// The letter that starts the next date token after position i, skipping
// separators; 0 at the end.
char next_token_letter(std::string_view pattern, std::size_t i) {
    for (; i < pattern.size(); ++i) {
        if (std::isalpha(static_cast<unsigned char>(pattern[i]))) return lower(pattern[i]);
    }
    return 0;
}

bool has_half_day(std::string_view pattern) {
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (starts_nocase(pattern, i, "am/pm") || starts_nocase(pattern, i, "a/p") ||
            starts_nocase(pattern, i, "ampm")) {
            return true;
        }
    }
    return false;
}

class PatternWriter {
  public:
    PatternWriter(double date, std::string_view pattern)
        : p_(split_date(date)), pattern_(pattern), twelve_hour_(has_half_day(pattern)) {}

    std::string run() {
        while (i_ < pattern_.size())
            step();
        return out_;
    }

  private:
    std::size_t run_length(char letter) const {
        std::size_t n = 0;
        while (i_ + n < pattern_.size() && lower(pattern_[i_ + n]) == letter)
            ++n;
        return n;
    }

    void emit(std::string text, std::size_t consumed, bool hour = false) {
        out_ += text;
        i_ += consumed;
        after_hour_ = hour;
    }

    void half_day() {
        bool pm = p_.hour >= 12;
        if (starts_nocase(pattern_, i_, "ampm")) {
            emit(pm ? "PM" : "AM", 4);
        } else if (starts_nocase(pattern_, i_, "am/pm")) {
            bool upper = pattern_[i_] == 'A';
            emit(pm ? (upper ? "PM" : "pm") : (upper ? "AM" : "am"), 5);
        } else if (starts_nocase(pattern_, i_, "a/p")) {
            bool upper = pattern_[i_] == 'A';
            emit(pm ? (upper ? "P" : "p") : (upper ? "A" : "a"), 3);
        } else {
            out_ += pattern_[i_++];
        }
    }

    void step() {
        const char c = pattern_[i_];
        const char l = lower(c);
        if (c == '\\' && i_ + 1 < pattern_.size()) {
            out_ += pattern_[i_ + 1];
            i_ += 2;
            return;
        }
        if (c == '"') {
            std::size_t end = pattern_.find('"', i_ + 1);
            if (end == std::string_view::npos) end = pattern_.size();
            out_.append(pattern_.substr(i_ + 1, end - i_ - 1));
            i_ = end + 1;
            return;
        }
        const std::size_t n = run_length(l);
        switch (l) {
            case 'h': {
                int h = p_.hour;
                if (twelve_hour_) h = h % 12 == 0 ? 12 : h % 12;
                emit(number(h, n >= 2 ? 2 : 1), n, true);
                return;
            }
            case 'n':
                emit(number(p_.minute, n >= 2 ? 2 : 1), n);
                return;
            case 's':
                emit(number(p_.second, n >= 2 ? 2 : 1), n);
                return;
            case 'm':
                if (n <= 2 && (after_hour_ || next_token_letter(pattern_, i_ + n) == 's')) {
                    emit(number(p_.minute, n), n);
                } else if (n <= 2) {
                    emit(number(p_.month, n), n);
                } else {
                    std::string name = kMonthNames[p_.month - 1];
                    emit(n == 3 ? name.substr(0, 3) : name, n);
                }
                return;
            case 'd':
                if (n <= 2) {
                    emit(number(p_.day, n), n);
                } else {
                    std::string name = kDayNames[Weekday(static_cast<double>(p_.day_number)) - 1];
                    emit(n == 3 ? name.substr(0, 3) : name, n);
                }
                return;
            case 'y':
                if (n >= 3) {
                    emit(number(p_.year, 4), n);
                } else if (n == 2) {
                    emit(number(p_.year % 100, 2), n);
                } else {
                    double first = DateSerial(p_.year, 1, 1);
                    emit(number(static_cast<int>(p_.day_number - first) + 1, 1), n);
                }
                return;
            case 'a':
                half_day();
                return;
            default:
                out_ += c;
                ++i_;
        }
    }

    const DateParts p_;
    const std::string_view pattern_;
    const bool twelve_hour_;
    std::size_t i_ = 0;
    bool after_hour_ = false;
    std::string out_;
};

const char kShortDate[] = "m/d/yyyy";
const char kLongTime[] = "h:mm:ss AM/PM";

}  // namespace

std::string Format(double date, std::string_view pattern) {
    if (equals_nocase(pattern, "general date")) return date_text(date);
    if (equals_nocase(pattern, "short date")) pattern = kShortDate;
    if (equals_nocase(pattern, "long time")) pattern = kLongTime;
    if (equals_nocase(pattern, "short time")) pattern = "hh:mm";
    return PatternWriter(date, pattern).run();
}

std::string Format(std::string_view text, std::string_view pattern) {
    const std::optional<double> date = parse_date_text(text);
    return date ? Format(*date, pattern) : std::string(text);
}

std::string date_text(double date) {
    DateParts p = split_date(date);
    if (p.day_number == 0) return Format(date, kLongTime);
    if (p.hour == 0 && p.minute == 0 && p.second == 0) return Format(date, kShortDate);
    return Format(date, kShortDate) + " " + Format(date, kLongTime);
}

namespace {

// A cursor over a date text.
class DateReader {
  public:
    explicit DateReader(std::string_view text) : t_(text) {}

    bool at_end() const { return i_ == t_.size(); }
    void skip_blanks() {
        while (i_ < t_.size() && t_[i_] == ' ')
            ++i_;
    }
    bool take(char c) {
        if (i_ < t_.size() && t_[i_] == c) {
            ++i_;
            return true;
        }
        return false;
    }
    bool take_word(std::string_view word) {
        if (!starts_nocase(t_, i_, word)) return false;
        i_ += word.size();
        return true;
    }
    // Up to max_digits digits; -1 when there are none. Sets digits_read.
    int integer(int max_digits = 4) {
        int value = 0;
        digits_read = 0;
        while (i_ < t_.size() && digits_read < max_digits &&
               std::isdigit(static_cast<unsigned char>(t_[i_]))) {
            value = value * 10 + (t_[i_++] - '0');
            ++digits_read;
        }
        return digits_read == 0 ? -1 : value;
    }
    std::size_t position() const { return i_; }
    void rewind(std::size_t to) { i_ = to; }

    int digits_read = 0;

  private:
    std::string_view t_;
    std::size_t i_ = 0;
};

bool valid_day(int year, int month, int day) {
    return month >= 1 && month <= 12 && day >= 1 && day <= days_in_month(year, month);
}

// "m/d/yyyy", "m/d/yy" or "yyyy-mm-dd"; the reader is left unmoved when the
// text does not start with a date.
std::optional<double> read_date(DateReader& r) {
    const std::size_t start = r.position();
    int a = r.integer();
    int a_digits = r.digits_read;
    if (a >= 0 && a_digits == 4 && r.take('-')) {
        int m = r.integer(2);
        if (m >= 0 && r.take('-')) {
            int d = r.integer(2);
            if (d >= 0 && valid_day(a, m, d)) return DateSerial(a, m, d);
        }
    } else if (a >= 0 && r.take('/')) {
        int d = r.integer(2);
        if (d >= 0 && r.take('/')) {
            int y = r.integer();
            if (y >= 0 && r.digits_read <= 2) y += y < 30 ? 2000 : 1900;
            if (y >= 0 && valid_day(y, a, d)) return DateSerial(y, a, d);
        }
    }
    r.rewind(start);
    return std::nullopt;
}

// "h:mm", "h:mm:ss", with " AM"/" PM", or "h AM": as a fraction of a day.
std::optional<double> read_time(DateReader& r) {
    int h = r.integer(2);
    if (h < 0) return std::nullopt;
    int m = 0;
    int s = 0;
    bool colon = r.take(':');
    if (colon) {
        m = r.integer(2);
        if (m < 0) return std::nullopt;
        if (r.take(':')) {
            s = r.integer(2);
            if (s < 0) return std::nullopt;
        }
    }
    r.skip_blanks();
    bool am = r.take_word("am") || r.take_word("a");
    bool pm = !am && (r.take_word("pm") || r.take_word("p"));
    if (!colon && !am && !pm) return std::nullopt;
    if (am || pm) {
        if (h > 12) return std::nullopt;
        h %= 12;
        if (pm) h += 12;
    }
    if (h > 23 || m > 59 || s > 59) return std::nullopt;
    return (3600.0 * h + 60.0 * m + s) / 86400.0;
}

}  // namespace

std::optional<double> parse_date_text(std::string_view text) {
    DateReader r(text);
    r.skip_blanks();
    std::optional<double> day = read_date(r);
    r.skip_blanks();
    std::optional<double> time;
    if (!r.at_end()) {
        time = read_time(r);
        if (!time) return std::nullopt;
        r.skip_blanks();
    }
    if (!r.at_end() || (!day && !time)) return std::nullopt;
    return from_linear(day.value_or(0) + time.value_or(0));
}

std::string event_time(double date) {
    // Whole milliseconds first: the date text alone would round the seconds.
    const auto ms = static_cast<long long>(std::llround(date * 86'400'000.0));
    const long long day = ms / 86'400'000LL;
    const long long in_day = ms % 86'400'000LL;
    char time[32];
    std::snprintf(time, sizeof time, " %02lld:%02lld:%02lld.%03lld", in_day / 3'600'000,
                  in_day / 60'000 % 60, in_day / 1000 % 60, in_day % 1000);
    return Format(static_cast<double>(day), "yyyy-mm-dd") + time;
}

}  // namespace tavora
