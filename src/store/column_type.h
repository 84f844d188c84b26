#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "runtime/value.h"

namespace tavora {

// How a column is declared in a library file and how its cells read back.
// The declared names are plain SQLite words so that any tool shows them and
// a row written by such a tool reads back as the station expects.
enum class ColumnType { Counter, Text, Number, Date, Time, Boolean, Unknown };

// The declaration used when creating a column ("TEXT", "DATETIME", ...).
std::string_view declared_type(ColumnType type);
// The type a declaration stands for; a foreign declaration maps by the usual
// SQLite affinity words, an empty one (an expression) to Unknown.
ColumnType column_type_from_declaration(std::string_view declaration);

Value::Kind value_kind(ColumnType type);

// A stored cell as the station reads it: dates and times stored as text by
// another tool are read as dates when they parse, booleans as -1/0.
Value value_from_number(double number, ColumnType type);
Value value_from_text(std::string text, ColumnType type);

// The value to store for an assignment to a column of this type, or nothing
// when the value can't be converted (text that is no date into a date).
std::optional<Value> value_for_column(const Value& value, ColumnType type);

}  // namespace tavora
