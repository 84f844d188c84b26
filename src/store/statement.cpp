#include "store/statement.h"

#include <utility>

namespace tavora {

Statement::Statement(sqlite3* db, std::string_view sql) {
    const int rc =
        sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &stmt_, nullptr);
    if (rc != SQLITE_OK) {
        error_ = sqlite3_errmsg(db);
        finalize();
    } else if (stmt_ == nullptr) {
        error_ = "empty statement";
    }
}

Statement::Statement(Statement&& other) noexcept
    : stmt_(std::exchange(other.stmt_, nullptr)), error_(std::move(other.error_)) {}

Statement& Statement::operator=(Statement&& other) noexcept {
    if (this != &other) {
        finalize();
        stmt_ = std::exchange(other.stmt_, nullptr);
        error_ = std::move(other.error_);
    }
    return *this;
}

Statement::~Statement() {
    finalize();
}

void Statement::finalize() {
    if (stmt_ != nullptr) sqlite3_finalize(stmt_);
    stmt_ = nullptr;
}

bool Statement::check_bind(int rc) {
    if (rc == SQLITE_OK) return true;
    error_ = sqlite3_errstr(rc);
    return false;
}

bool Statement::bind(int index, const Value& value) {
    if (!ok()) return false;
    switch (value.kind()) {
        case Value::Kind::Null:
            return check_bind(sqlite3_bind_null(stmt_, index));
        case Value::Kind::Text:
            return bind_text(index, value.text());
        case Value::Kind::Boolean:
            return check_bind(sqlite3_bind_int(stmt_, index, value.truthy() ? -1 : 0));
        case Value::Kind::Number:
        case Value::Kind::Date:
            return check_bind(sqlite3_bind_double(stmt_, index, value.number()));
    }
    return false;
}

bool Statement::bind_int64(int index, long long value) {
    return ok() && check_bind(sqlite3_bind_int64(stmt_, index, value));
}

bool Statement::bind_text(int index, std::string_view text) {
    return ok() && check_bind(sqlite3_bind_text(stmt_, index, text.data(),
                                                static_cast<int>(text.size()), SQLITE_TRANSIENT));
}

Statement::Step Statement::step() {
    if (!ok()) return Step::Error;
    const int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW) return Step::Row;
    if (rc == SQLITE_DONE) return Step::Done;
    error_ = sqlite3_errmsg(sqlite3_db_handle(stmt_));
    sqlite3_reset(stmt_);
    return Step::Error;
}

void Statement::reset() {
    if (!ok()) return;
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
}

int Statement::column_count() const {
    return ok() ? sqlite3_column_count(stmt_) : 0;
}

std::string Statement::column_name(int column) const {
    const char* name = ok() ? sqlite3_column_name(stmt_, column) : nullptr;
    return name != nullptr ? name : "";
}

ColumnType Statement::column_declared_type(int column) const {
    const char* decl = ok() ? sqlite3_column_decltype(stmt_, column) : nullptr;
    return column_type_from_declaration(decl != nullptr ? decl : "");
}

long long Statement::column_int64(int column) const {
    return sqlite3_column_int64(stmt_, column);
}

std::string Statement::column_text(int column) const {
    const auto* text = sqlite3_column_text(stmt_, column);
    if (text == nullptr) return {};
    return std::string(reinterpret_cast<const char*>(text),
                       static_cast<std::size_t>(sqlite3_column_bytes(stmt_, column)));
}

Value Statement::column_value(int column, ColumnType type) const {
    switch (sqlite3_column_type(stmt_, column)) {
        case SQLITE_NULL:
            return Value();
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
            return value_from_number(sqlite3_column_double(stmt_, column), type);
        default:
            return value_from_text(column_text(column), type);
    }
}

}  // namespace tavora
