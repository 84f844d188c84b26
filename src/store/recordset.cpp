#include "store/recordset.h"

#include <strings.h>
#include <algorithm>

namespace tavora {

namespace {

const Value& null_value() {
    static const Value null;
    return null;
}

const std::string& no_name() {
    static const std::string none;
    return none;
}

}  // namespace

bool Recordset::fail(std::string message) {
    error_ = std::move(message);
    return false;
}

bool Recordset::Open(std::shared_ptr<Library> library, std::string record_source) {
    library_ = std::move(library);
    source_ = std::move(record_source);
    plan_.reset();
    cache_ = RowCache();
    return Requery();
}

std::size_t Recordset::row_count() const {
    if (keyed()) return keys_.size();
    const int columns = field_count();
    return columns > 0 ? cells_.size() / static_cast<std::size_t>(columns) : 0;
}

bool Recordset::Requery() {
    CancelUpdate();
    error_.clear();
    return run();
}

bool Recordset::Refresh() {
    CancelUpdate();
    if (library_ == nullptr) return fail("No database is open");
    if (plan_ != nullptr && !library_->changed_since(run_generation_, *plan_)) {
        MoveFirst();
        return true;
    }
    return run();
}

bool Recordset::run() {
    keys_.clear();
    cells_.clear();
    cache_.clear();
    position_ = 0;
    on_deleted_ = false;
    if (library_ == nullptr) return fail("No database is open");
    plan_ = library_->plan(source_, error_);
    if (plan_ == nullptr) return false;
    run_generation_ = library_->generation();
    Statement& query = plan_->run;
    query.reset();
    Statement::Step step;
    if (keyed()) {
        while ((step = query.step()) == Statement::Step::Row)
            keys_.push_back(query.column_int64(0));
    } else {
        const int columns = field_count();
        while ((step = query.step()) == Statement::Step::Row) {
            for (int c = 0; c < columns; ++c)
                cells_.push_back(query.column_value(c, plan_->types[c]));
        }
    }
    query.reset();
    if (step == Statement::Step::Error) {
        keys_.clear();
        cells_.clear();
        run_generation_ = 0;
        return fail(query.error());
    }
    return true;
}

void Recordset::MoveFirst() {
    CancelUpdate();
    on_deleted_ = false;
    position_ = 0;
}

void Recordset::MoveLast() {
    CancelUpdate();
    on_deleted_ = false;
    position_ = row_count() > 0 ? static_cast<long>(row_count()) - 1 : 0;
}

void Recordset::MoveNext() {
    CancelUpdate();
    if (on_deleted_) {
        on_deleted_ = false;  // the row after the deleted one took its place
    } else if (position_ < RecordCount()) {
        ++position_;
    }
}

void Recordset::MovePrevious() {
    CancelUpdate();
    on_deleted_ = false;
    if (position_ >= 0) --position_;
}

void Recordset::Move(long rows) {
    if (!has_current()) {
        fail("No current record");
        return;
    }
    CancelUpdate();
    position_ = std::clamp(position_ + rows, -1L, RecordCount());
}

bool Recordset::IsEOF() const {
    return row_count() == 0 || position_ >= RecordCount();
}

bool Recordset::IsBOF() const {
    return row_count() == 0 || position_ < 0;
}

bool Recordset::has_current() const {
    return !on_deleted_ && !IsEOF() && !IsBOF();
}

long Recordset::AbsolutePosition() const {
    return has_current() ? position_ : -1;
}

int Recordset::field_count() const {
    return plan_ != nullptr ? static_cast<int>(plan_->names.size()) : 0;
}

const std::string& Recordset::field_name(int ordinal) const {
    if (ordinal < 0 || ordinal >= field_count()) return no_name();
    return plan_->names[static_cast<std::size_t>(ordinal)];
}

int Recordset::field_index(std::string_view name) const {
    for (int i = 0; i < field_count(); ++i) {
        const std::string& candidate = plan_->names[static_cast<std::size_t>(i)];
        if (candidate.size() == name.size() &&
            strncasecmp(candidate.data(), name.data(), name.size()) == 0) {
            return i;
        }
    }
    return -1;
}

const Value& Recordset::Fields(int ordinal) {
    if (ordinal < 0 || ordinal >= field_count()) return null_value();
    const auto column = static_cast<std::size_t>(ordinal);
    if (edit_ != EditMode::None) return pending_[column];
    if (!has_current()) return null_value();
    const auto index = static_cast<std::size_t>(position_);
    if (!keyed()) return cells_[index * static_cast<std::size_t>(field_count()) + column];
    return cache_.field(*library_, *plan_, keys_, index, column);
}

const Value& Recordset::FieldAt(long row, int ordinal) {
    if (row == AbsolutePosition()) return Fields(ordinal);
    if (ordinal < 0 || ordinal >= field_count() || row < 0 || row >= RecordCount()) {
        return null_value();
    }
    const auto index = static_cast<std::size_t>(row);
    const auto column = static_cast<std::size_t>(ordinal);
    if (!keyed()) return cells_[index * static_cast<std::size_t>(field_count()) + column];
    return cache_.field(*library_, *plan_, keys_, index, column);
}

const Value& Recordset::Fields(std::string_view name) {
    return Fields(field_index(name));
}

void Recordset::note_write(std::size_t index, const std::vector<Value>& row,
                           const std::vector<std::string>& columns) {
    const std::uint64_t before = library_->known_generation();
    if (columns.empty()) {
        library_->note_write();
    } else {
        library_->note_write(columns);
    }
    cache_.note_written(before, library_->known_generation(), index, row);
}

bool Recordset::SetField(int ordinal, const Value& value) {
    if (edit_ == EditMode::None) return fail("Update or CancelUpdate without AddNew or Edit");
    if (ordinal < 0 || ordinal >= field_count()) return fail("Item not found in this collection");
    const auto column = static_cast<std::size_t>(ordinal);
    if (plan_->types[column] == ColumnType::Counter) {
        return fail("Field '" + plan_->names[column] + "' can't be updated");
    }
    const std::optional<Value> stored = value_for_column(value, plan_->types[column]);
    if (!stored) return fail("Data type conversion error in '" + plan_->names[column] + "'");
    pending_[column] = *stored;
    dirty_[column] = true;
    return true;
}

bool Recordset::SetField(std::string_view name, const Value& value) {
    const int index = field_index(name);
    if (index < 0) return fail("Item not found in this collection: " + std::string(name));
    return SetField(index, value);
}

bool Recordset::Edit() {
    if (!keyed()) return fail("This recordset can't be updated");
    if (!has_current()) return fail("No current record");
    auto row = RowCache::whole_row(*library_, *plan_, keys_[static_cast<std::size_t>(position_)]);
    if (!row) return fail("The record was deleted by another user");
    pending_ = std::move(*row);
    dirty_.assign(pending_.size(), false);
    edit_ = EditMode::Edit;
    return true;
}

bool Recordset::AddNew() {
    if (!keyed()) return fail("This recordset can't be updated");
    pending_.assign(static_cast<std::size_t>(field_count()), Value());
    dirty_.assign(pending_.size(), false);
    edit_ = EditMode::Add;
    return true;
}

void Recordset::CancelUpdate() {
    edit_ = EditMode::None;
    pending_.clear();
    dirty_.clear();
}

bool Recordset::Update() {
    if (edit_ == EditMode::None) return fail("Update or CancelUpdate without AddNew or Edit");
    const bool written = edit_ == EditMode::Edit ? write_edit() : write_new();
    if (written) CancelUpdate();
    return written;
}

bool Recordset::write_edit() {
    std::string sql = "UPDATE " + quote_identifier(plan_->table) + " SET ";
    std::vector<std::string> written;
    for (std::size_t c = 0; c < dirty_.size(); ++c) {
        if (!dirty_[c]) continue;
        if (!written.empty()) sql += ", ";
        sql += quote_identifier(plan_->names[c]) + " = ?";
        written.push_back(plan_->names[c]);
    }
    if (written.empty()) return true;
    sql += " WHERE rowid = ?";
    Connection& connection = library_->connection();
    Statement statement = connection.prepare(sql);
    int parameter = 1;
    for (std::size_t c = 0; c < dirty_.size(); ++c) {
        if (dirty_[c]) statement.bind(parameter++, pending_[c]);
    }
    const long long key = keys_[static_cast<std::size_t>(position_)];
    statement.bind_int64(parameter, key);
    if (statement.step() != Statement::Step::Done) return fail(statement.error());
    if (connection.changes() == 0) return fail("The record was deleted by another user");

    // The values written are already in their stored form, so the cached
    // rows stay good: only the row written changes.
    note_write(static_cast<std::size_t>(position_), pending_, written);
    last_modified_ = key;
    return true;
}

bool Recordset::write_new() {
    std::string names;
    std::string marks;
    for (std::size_t c = 0; c < dirty_.size(); ++c) {
        if (!dirty_[c]) continue;
        if (!names.empty()) {
            names += ", ";
            marks += ", ";
        }
        names += quote_identifier(plan_->names[c]);
        marks += '?';
    }
    std::string sql = "INSERT INTO " + quote_identifier(plan_->table);
    sql += names.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + marks + ")";
    Connection& connection = library_->connection();
    Statement statement = connection.prepare(sql);
    int parameter = 1;
    for (std::size_t c = 0; c < dirty_.size(); ++c) {
        if (dirty_[c]) statement.bind(parameter++, pending_[c]);
    }
    if (statement.step() != Statement::Step::Done) return fail(statement.error());
    note_write(keys_.size(), {}, {});
    last_modified_ = connection.last_insert_rowid();
    keys_.push_back(last_modified_);
    return true;
}

bool Recordset::Delete() {
    if (!keyed()) return fail("This recordset can't be updated");
    if (!has_current()) return fail("No current record");
    CancelUpdate();
    Statement statement = library_->connection().prepare(
        "DELETE FROM " + quote_identifier(plan_->table) + " WHERE rowid = ?");
    statement.bind_int64(1, keys_[static_cast<std::size_t>(position_)]);
    if (statement.step() != Statement::Step::Done) return fail(statement.error());
    library_->note_write();
    keys_.erase(keys_.begin() + position_);
    cache_.clear();
    on_deleted_ = true;
    return true;
}

Value Recordset::Bookmark() const {
    if (!keyed() || !has_current()) return Value();
    return Value(keys_[static_cast<std::size_t>(position_)]);
}

bool Recordset::SetBookmark(const Value& bookmark) {
    if (!keyed() || bookmark.is_null()) return fail("Not a valid bookmark");
    const auto key = static_cast<long long>(bookmark.number());
    const auto found = std::find(keys_.begin(), keys_.end(), key);
    if (found == keys_.end()) return fail("Not a valid bookmark");
    CancelUpdate();
    on_deleted_ = false;
    position_ = static_cast<long>(found - keys_.begin());
    return true;
}

Value Recordset::LastModified() const {
    return last_modified_ != 0 ? Value(last_modified_) : Value();
}

Recordset OpenRecordset(const std::shared_ptr<Library>& library, std::string record_source) {
    Recordset recordset;
    recordset.Open(library, std::move(record_source));
    return recordset;
}

}  // namespace tavora
