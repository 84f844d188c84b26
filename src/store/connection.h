#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "store/statement.h"

namespace tavora {

// An open SQLite file. Owns the handle; moves but never copies.
class Connection {
  public:
    enum class Mode { OpenExisting, Create };

    Connection() = default;
    Connection(const std::filesystem::path& path, Mode mode);
    Connection(Connection&& other) noexcept;
    Connection& operator=(Connection&& other) noexcept;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    bool ok() const { return db_ != nullptr; }
    const std::string& error() const { return error_; }
    sqlite3* handle() const { return db_; }

    Statement prepare(std::string_view sql) const { return Statement(db_, sql); }
    // Runs SQL without parameters (schema, pragmas, transaction words).
    bool exec(std::string_view sql);
    // The first column of the first row, or Null.
    Value scalar(std::string_view sql);

    bool in_transaction() const { return db_ != nullptr && sqlite3_get_autocommit(db_) == 0; }
    long long last_insert_rowid() const { return sqlite3_last_insert_rowid(db_); }
    // Rows touched by the last INSERT, UPDATE or DELETE.
    int changes() const { return sqlite3_changes(db_); }

  private:
    void close();

    sqlite3* db_ = nullptr;
    std::string error_;
};

// An identifier quoted for SQL, whatever characters the name holds.
std::string quote_identifier(std::string_view name);

}  // namespace tavora
