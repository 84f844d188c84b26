#include "runtime/convert.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace tavora {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// Reads "&H..." or "&O..." digits; up to four digits are a 16-bit integer,
// more a 32-bit one.
double radix_value(std::string_view digits, int radix) {
    long long value = 0;
    int count = 0;
    for (char c : digits) {
        if (is_blank(c)) continue;
        int d;
        if (c >= '0' && c <= '9') {
            d = c - '0';
        } else if (radix == 16 && std::isxdigit(static_cast<unsigned char>(c))) {
            d = std::toupper(static_cast<unsigned char>(c)) - 'A' + 10;
        } else {
            break;
        }
        if (d >= radix) break;
        value = (value * radix + d) & 0xFFFFFFFFLL;
        ++count;
    }
    if (count <= 4 && value >= 0x8000) return static_cast<double>(value - 0x10000);
    if (value >= 0x80000000LL) return static_cast<double>(value - 0x100000000LL);
    return static_cast<double>(value);
}

// Copies the leading decimal number of text, blanks removed, in a form
// strtod reads; "D" exponents become "E". Returns how many characters of
// text the number used (0 when there is none).
std::size_t decimal_prefix(std::string_view text, std::string& out) {
    std::size_t i = 0;
    std::size_t used = 0;
    auto skip = [&] {
        while (i < text.size() && is_blank(text[i]))
            ++i;
    };
    auto digits = [&] {
        bool any = false;
        for (skip(); i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); skip()) {
            out += text[i++];
            any = true;
        }
        return any;
    };
    skip();
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
        out += text[i++];
    }
    bool mantissa = digits();
    if (mantissa) used = i;
    if (i < text.size() && text[i] == '.') {
        out += text[i++];
        if (digits()) mantissa = true;
        if (mantissa) used = i;
    }
    if (!mantissa) {
        out.clear();
        return 0;
    }
    if (i < text.size() && (text[i] == 'E' || text[i] == 'e' || text[i] == 'D' || text[i] == 'd')) {
        std::string exponent = "E";
        std::size_t j = i + 1;
        while (j < text.size() && is_blank(text[j]))
            ++j;
        if (j < text.size() && (text[j] == '-' || text[j] == '+')) exponent += text[j++];
        std::size_t before = out.size();
        i = j;
        out += exponent;
        if (digits()) {
            used = i;
        } else {
            out.resize(before);
        }
    }
    return used;
}

}  // namespace

std::string number_text(double number) {
    if (number == 0) return "0";  // also for -0
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15G", number);
    return buf;
}

std::string Str(double number) {
    std::string text = number_text(number);
    if (text.starts_with("0.")) {
        text.erase(0, 1);
    } else if (text.starts_with("-0.")) {
        text.erase(1, 1);
    }
    if (std::signbit(number) && number != 0) return text;
    std::string padded(1, ' ');
    padded += text;
    return padded;
}

double Val(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && is_blank(text[i]))
        ++i;
    if (i + 1 < text.size() && text[i] == '&') {
        char kind = static_cast<char>(std::toupper(static_cast<unsigned char>(text[i + 1])));
        if (kind == 'H') return radix_value(text.substr(i + 2), 16);
        if (kind == 'O') return radix_value(text.substr(i + 2), 8);
    }
    std::string number;
    if (decimal_prefix(text, number) == 0) return 0;
    double value = std::strtod(number.c_str(), nullptr);
    return std::isfinite(value) ? value : 0;
}

bool IsNumeric(std::string_view text) {
    std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return false;
    std::size_t last = text.find_last_not_of(' ');
    std::string_view core = text.substr(first, last - first + 1);
    for (char c : core) {
        if (is_blank(c)) return false;
    }
    std::string number;
    return decimal_prefix(core, number) == core.size();
}

namespace {

int round_clamped(double number, double low, double high) {
    if (std::isnan(number)) return 0;
    double r = std::nearbyint(number);  // the default rounding mode is half to even
    if (r < low) r = low;
    if (r > high) r = high;
    return static_cast<int>(r);
}

}  // namespace

int CInt(double number) {
    return round_clamped(number, -32768, 32767);
}

int CLng(double number) {
    return round_clamped(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

double Int(double number) {
    return std::floor(number);
}

double Fix(double number) {
    return std::trunc(number);
}

std::optional<bool> parse_boolean(std::string_view text) {
    std::string word;
    for (char c : text) {
        if (c != ' ' && c != '\t')
            word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    if (word == "true" || word == "#true#") return true;
    if (word == "false" || word == "#false#") return false;
    if (IsNumeric(word)) return Val(word) != 0;
    return std::nullopt;
}

}  // namespace tavora
