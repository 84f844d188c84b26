#pragma once

#include <span>
#include <string>
#include <string_view>

#include "store/column_type.h"

namespace tavora {

// The tables of the library and settings files, in field order. Creation,
// the open check and the readers all take the layout from here.
struct ColumnSpec {
    std::string_view name;
    ColumnType type;
    std::string_view default_sql = {};  // a constant SQL expression, or none
};

struct TableSpec {
    std::string_view name;
    std::span<const ColumnSpec> columns;
    std::string_view constraint = {};  // a table constraint, or none
};

enum class FileKind { Library, Settings };

std::span<const TableSpec> tables_of(FileKind kind);
const TableSpec& recordings_table();
// Where the stored queries live, a name and a text per row.
const TableSpec& stored_query_table();

// Raised when a file layout changes, with an upgrade step for older files.
constexpr int kSchemaVersion = 1;

std::string create_table_sql(const TableSpec& table);

}  // namespace tavora
