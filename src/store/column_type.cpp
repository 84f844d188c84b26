#include "store/column_type.h"

#include <algorithm>
#include <cctype>

#include "runtime/convert.h"
#include "runtime/date_text.h"

namespace tavora {

namespace {

std::string upper(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return out;
}

bool has(const std::string& text, std::string_view word) {
    return text.find(word) != std::string::npos;
}

std::optional<bool> boolean_from_text(const std::string& text) {
    const std::string word = upper(text);
    if (word == "TRUE" || word == "YES" || word == "ON") return true;
    if (word == "FALSE" || word == "NO" || word == "OFF") return false;
    if (IsNumeric(text)) return Val(text) != 0;
    return std::nullopt;
}

}  // namespace

std::string_view declared_type(ColumnType type) {
    switch (type) {
        case ColumnType::Counter:
            return "INTEGER";
        case ColumnType::Text:
            return "TEXT";
        case ColumnType::Number:
            return "NUMBER";
        case ColumnType::Date:
            return "DATETIME";
        case ColumnType::Time:
            return "TIME";
        case ColumnType::Boolean:
            return "BOOLEAN";
        case ColumnType::Unknown:
            break;
    }
    return "";
}

ColumnType column_type_from_declaration(std::string_view declaration) {
    const std::string decl = upper(declaration);
    if (decl.empty()) return ColumnType::Unknown;
    if (has(decl, "BOOL") || has(decl, "BIT") || has(decl, "YESNO")) return ColumnType::Boolean;
    if (has(decl, "DATE")) return ColumnType::Date;
    if (has(decl, "TIME")) return ColumnType::Time;
    if (has(decl, "CHAR") || has(decl, "TEXT") || has(decl, "CLOB") || has(decl, "MEMO")) {
        return ColumnType::Text;
    }
    if (decl == "INTEGER") return ColumnType::Counter;
    return ColumnType::Number;
}

Value::Kind value_kind(ColumnType type) {
    switch (type) {
        case ColumnType::Text:
            return Value::Kind::Text;
        case ColumnType::Date:
        case ColumnType::Time:
            return Value::Kind::Date;
        case ColumnType::Boolean:
            return Value::Kind::Boolean;
        case ColumnType::Counter:
        case ColumnType::Number:
        case ColumnType::Unknown:
            break;
    }
    return Value::Kind::Number;
}

Value value_from_number(double number, ColumnType type) {
    switch (value_kind(type)) {
        case Value::Kind::Text:
            return Value(number_text(number));
        case Value::Kind::Date:
            return Value::date(number);
        case Value::Kind::Boolean:
            return Value::boolean(number != 0);
        default:
            return Value(number);
    }
}

Value value_from_text(std::string text, ColumnType type) {
    switch (value_kind(type)) {
        case Value::Kind::Date:
            if (const auto date = parse_date_text(text)) return Value::date(*date);
            break;
        case Value::Kind::Boolean:
            if (const auto b = boolean_from_text(text)) return Value::boolean(*b);
            break;
        default:
            break;
    }
    return Value(std::move(text));
}

std::optional<Value> value_for_column(const Value& value, ColumnType type) {
    if (value.is_null() || type == ColumnType::Unknown) return value;
    const bool numeric = value.is_numeric();
    switch (value_kind(type)) {
        case Value::Kind::Text:
            return value.kind() == Value::Kind::Text ? value : Value(value.text());
        case Value::Kind::Date:
            if (numeric) return Value::date(value.number());
            if (const auto date = parse_date_text(value.text())) return Value::date(*date);
            return std::nullopt;
        case Value::Kind::Boolean:
            if (numeric) return Value::boolean(value.number() != 0);
            if (const auto b = boolean_from_text(value.text())) return Value::boolean(*b);
            return std::nullopt;
        default:
            if (numeric) return Value(value.number());
            // Old libraries keep digits as text in numeric fields; the column
            // stores them as numbers.
            if (IsNumeric(value.text())) return Value(Val(value.text()));
            return std::nullopt;
    }
}

}  // namespace tavora
