#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "runtime/value.h"
#include "store/column_type.h"

namespace tavora {

// One prepared statement. It owns its handle, moves but never copies, and
// takes every value from outside as a bound parameter.
class Statement {
  public:
    enum class Step { Row, Done, Error };

    Statement() = default;
    Statement(sqlite3* db, std::string_view sql);
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&& other) noexcept;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    bool ok() const { return stmt_ != nullptr; }
    // The reason prepare, bind or step failed; empty when all went well.
    const std::string& error() const { return error_; }

    // Parameters count from 1, as SQLite numbers them.
    bool bind(int index, const Value& value);
    bool bind_int64(int index, long long value);
    bool bind_text(int index, std::string_view text);

    Step step();
    // Ready to run again with new bindings.
    void reset();

    int column_count() const;
    std::string column_name(int column) const;
    ColumnType column_declared_type(int column) const;
    long long column_int64(int column) const;
    std::string column_text(int column) const;
    Value column_value(int column, ColumnType type) const;

  private:
    bool check_bind(int rc);
    void finalize();

    sqlite3_stmt* stmt_ = nullptr;
    std::string error_;
};

}  // namespace tavora
