#include "runtime/value.h"

#include <cctype>

#include "runtime/convert.h"
#include "runtime/date_text.h"

namespace tavora {

Value::Value() = default;
Value::Value(double number) : kind_(Kind::Number), num_(number) {}
Value::Value(int number) : kind_(Kind::Number), num_(number) {}
Value::Value(long number) : kind_(Kind::Number), num_(static_cast<double>(number)) {}
Value::Value(long long number) : kind_(Kind::Number), num_(static_cast<double>(number)) {}
Value::Value(std::string text) : kind_(Kind::Text), text_(std::move(text)) {}
Value::Value(const char* text) : kind_(Kind::Text), text_(text ? text : "") {}

Value Value::boolean(bool b) {
    Value v(b ? -1 : 0);
    v.kind_ = Kind::Boolean;
    return v;
}

Value Value::date(double serial) {
    Value v(serial);
    v.kind_ = Kind::Date;
    return v;
}

bool Value::is_numeric() const {
    return kind_ == Kind::Number || kind_ == Kind::Date || kind_ == Kind::Boolean;
}

double Value::number() const {
    return kind_ == Kind::Text ? Val(text_) : num_;
}

std::string Value::text() const {
    switch (kind_) {
        case Kind::Null:
            return {};
        case Kind::Number:
            return number_text(num_);
        case Kind::Text:
            return text_;
        case Kind::Date:
            return date_text(num_);
        case Kind::Boolean:
            return num_ != 0 ? "True" : "False";
    }
    return {};
}

namespace {

int sign(double d) {
    return (d > 0) - (d < 0);
}

int compare_text(const std::string& a, const std::string& b, Value::Case c) {
    if (c == Value::Case::Exact) return sign(a.compare(b));
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        int x = std::tolower(static_cast<unsigned char>(a[i]));
        int y = std::tolower(static_cast<unsigned char>(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    return sign(static_cast<double>(a.size()) - static_cast<double>(b.size()));
}

// A number, date or boolean against a text: the text's number (or date, for
// a date) when it reads as one, else the number sorts first.
int compare_mixed(const Value& numeric, const std::string& text) {
    if (IsNumeric(text)) return sign(numeric.number() - Val(text));
    if (numeric.kind() == Value::Kind::Date) {
        if (std::optional<double> d = parse_date_text(text)) return sign(numeric.number() - *d);
    }
    return -1;
}

}  // namespace

std::optional<int> Value::compare(const Value& a, const Value& b, Case c) {
    if (a.is_null() || b.is_null()) return std::nullopt;
    if (a.is_numeric() && b.is_numeric()) return sign(a.num_ - b.num_);
    if (a.is_numeric()) return compare_mixed(a, b.text_);
    if (b.is_numeric()) return -compare_mixed(b, a.text_);
    return compare_text(a.text_, b.text_, c);
}

bool Value::truthy() const {
    if (kind_ == Kind::Text && compare_text(text_, "True", Case::NoCase) == 0) return true;
    return number() != 0;
}

bool Value::operator==(const Value& other) const {
    return compare(*this, other) == 0;
}
bool Value::operator!=(const Value& other) const {
    std::optional<int> r = compare(*this, other);
    return r && *r != 0;
}
bool Value::operator<(const Value& other) const {
    std::optional<int> r = compare(*this, other);
    return r && *r < 0;
}
bool Value::operator<=(const Value& other) const {
    std::optional<int> r = compare(*this, other);
    return r && *r <= 0;
}
bool Value::operator>(const Value& other) const {
    std::optional<int> r = compare(*this, other);
    return r && *r > 0;
}
bool Value::operator>=(const Value& other) const {
    std::optional<int> r = compare(*this, other);
    return r && *r >= 0;
}

bool Value::same(const Value& other) const {
    return kind_ == other.kind_ && num_ == other.num_ && text_ == other.text_;
}

std::string Str(const Value& value) {
    const Value::Kind k = value.kind();
    if (k == Value::Kind::Number || k == Value::Kind::Text) return Str(value.number());
    return value.text();
}

bool equals_nocase(const Value& a, const Value& b) {
    return Value::compare(a, b, Value::Case::NoCase) == 0;
}

}  // namespace tavora
