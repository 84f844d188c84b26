#include "store/connection.h"

#include <utility>

namespace tavora {

namespace {
// Long enough for a second PC that holds the file over a share to finish
// its write; short enough that the rules never seem to hang.
constexpr int kBusyTimeoutMs = 2000;
}  // namespace

Connection::Connection(const std::filesystem::path& path, Mode mode) {
    // The rules run on one thread, so SQLite's own locking is not needed.
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    if (mode == Mode::Create) flags |= SQLITE_OPEN_CREATE;
    const int rc = sqlite3_open_v2(path.c_str(), &db_, flags, nullptr);
    if (rc != SQLITE_OK) {
        error_ = db_ != nullptr ? sqlite3_errmsg(db_) : sqlite3_errstr(rc);
        close();
        return;
    }
    sqlite3_busy_timeout(db_, kBusyTimeoutMs);
    sqlite3_extended_result_codes(db_, 1);
}

Connection::Connection(Connection&& other) noexcept
    : db_(std::exchange(other.db_, nullptr)), error_(std::move(other.error_)) {}

Connection& Connection::operator=(Connection&& other) noexcept {
    if (this != &other) {
        close();
        db_ = std::exchange(other.db_, nullptr);
        error_ = std::move(other.error_);
    }
    return *this;
}

Connection::~Connection() {
    close();
}

void Connection::close() {
    // v2 defers the close until every statement is finalized, so a cached
    // statement that outlives the connection can't crash it.
    if (db_ != nullptr) sqlite3_close_v2(db_);
    db_ = nullptr;
}

bool Connection::exec(std::string_view sql) {
    if (!ok()) return false;
    char* message = nullptr;
    const int rc = sqlite3_exec(db_, std::string(sql).c_str(), nullptr, nullptr, &message);
    if (rc != SQLITE_OK) {
        error_ = message != nullptr ? message : sqlite3_errstr(rc);
        sqlite3_free(message);
        return false;
    }
    return true;
}

Value Connection::scalar(std::string_view sql) {
    Statement statement = prepare(sql);
    if (statement.step() != Statement::Step::Row) {
        error_ = statement.error();
        return Value();
    }
    return statement.column_value(0, statement.column_declared_type(0));
}

std::string quote_identifier(std::string_view name) {
    std::string out = "\"";
    for (const char c : name) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
    return out;
}

}  // namespace tavora
