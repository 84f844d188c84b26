#pragma once

#include <optional>
#include <string>

namespace tavora {

// A nullable, loosely typed field value, as the library stores it.
//
// Comparisons: any comparison with Null is false, so neither a test nor its
// negation passes. Two numeric kinds (number, date, boolean) compare as
// numbers; a number against text that reads as a number compares as numbers;
// a number against other text sorts the number first. Text against text
// compares exactly (byte order) unless the caller asks for NoCase.
class Value {
  public:
    enum class Kind { Null, Number, Text, Date, Boolean };
    enum class Case { Exact, NoCase };

    Value();  // Null
    Value(double number);
    Value(int number);
    Value(long number);
    Value(long long number);
    Value(std::string text);
    Value(const char* text);
    // A bool would silently become a number; say which is meant.
    Value(bool) = delete;

    static Value boolean(bool b);  // stored as -1 / 0
    static Value date(double serial);

    Kind kind() const { return kind_; }
    bool is_null() const { return kind_ == Kind::Null; }
    // Number, date or boolean.
    bool is_numeric() const;

    // Number, date or boolean as a double; text through Val; Null gives 0.
    double number() const;
    // The text a field shows: numbers as CStr writes them, booleans as
    // "True"/"False", dates as their default text, Null as "".
    std::string text() const;
    // Non-zero, or the text "True" in any case. Null, and text that reads
    // as 0, are false.
    bool truthy() const;

    // Negative, zero or positive; nothing when either side is Null.
    static std::optional<int> compare(const Value& a, const Value& b, Case c = Case::Exact);

    bool operator==(const Value& other) const;  // false when either is Null
    bool operator<(const Value& other) const;
    bool operator<=(const Value& other) const;
    bool operator>(const Value& other) const;
    bool operator>=(const Value& other) const;
    // Not the negation of ==: also false when either is Null.
    bool operator!=(const Value& other) const;

    // Exactly the same kind and content, Null equal to Null: for tests and
    // change detection, not for the rules.
    bool same(const Value& other) const;

  private:
    Kind kind_ = Kind::Null;
    double num_ = 0;
    std::string text_;
};

// Str of a field value: a number's text with its leading blank (text through
// Val first), but a date's default text and a boolean's "True"/"False" as
// they are; Null gives "".
std::string Str(const Value& value);

// Case-insensitive (ASCII) equality, as the start-up module compares.
bool equals_nocase(const Value& a, const Value& b);

}  // namespace tavora
