#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/value.h"
#include "store/library.h"
#include "store/row_cache.h"

namespace tavora {

// The rows of a record source. A source that selects whole rows of one
// table holds only the row keys, in the query's order, and reads a row's
// fields when the walk reaches it, so fields are always current and writes
// go straight to the file. Any other query holds its result as it was run
// and can't be edited.
//
// Positions count from 0; before the first row is BOF, after the last EOF.
class Recordset {
  public:
    Recordset() = default;  // closed: no rows, BOF and EOF
    Recordset(Recordset&&) = default;
    Recordset& operator=(Recordset&&) = default;

    bool Open(std::shared_ptr<Library> library, std::string record_source);
    bool is_open() const { return plan_ != nullptr; }
    const std::string& source() const { return source_; }
    const std::shared_ptr<Library>& library() const { return library_; }
    // Why the last call failed.
    const std::string& error() const { return error_; }

    // Runs the source again and goes to the first row.
    bool Requery();
    // Goes to the first row; runs the source again only when the library
    // changed since the last run.
    bool Refresh();

    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    // From the current row; past either end gives EOF or BOF.
    void Move(long rows);
    // Named so because EOF is a macro of the C library.
    bool IsEOF() const;
    bool IsBOF() const;
    long RecordCount() const { return static_cast<long>(row_count()); }
    // -1 when there is no current row.
    long AbsolutePosition() const;

    int field_count() const;
    const std::string& field_name(int ordinal) const;
    // -1 when the name isn't a field; names match without regard to case.
    int field_index(std::string_view name) const;
    // The current row's field, or the pending value while editing. Null
    // when there is no current row or no such field. The reference holds
    // until the next call on this recordset.
    const Value& Fields(int ordinal);
    const Value& Fields(std::string_view name);
    // A field of any row without moving to it, as a grid shows the rows;
    // the current row gives its pending value while editing.
    const Value& FieldAt(long row, int ordinal);

    // Edit or AddNew first; the value is converted to the field's type and
    // refused when it can't be.
    bool SetField(int ordinal, const Value& value);
    bool SetField(std::string_view name, const Value& value);
    bool Edit();
    bool AddNew();
    // Writes the pending row to the file at once. After AddNew the current
    // row stays the one before it, and LastModified names the new row.
    bool Update();
    void CancelUpdate();
    bool is_editing() const { return edit_ != EditMode::None; }
    // Removes the current row from the file; MoveNext then goes to the row
    // after it.
    bool Delete();

    // The current row's key; Null when there is none.
    Value Bookmark() const;
    bool SetBookmark(const Value& bookmark);
    Value LastModified() const;

  private:
    enum class EditMode { None, Edit, Add };
    bool keyed() const { return plan_ != nullptr && !plan_->table.empty(); }
    std::size_t row_count() const;
    bool has_current() const;
    bool fail(std::string message);
    bool run();
    // No columns: a write of unknown reach, such as a new row.
    void note_write(std::size_t index, const std::vector<Value>& row,
                    const std::vector<std::string>& columns);
    bool write_edit();
    bool write_new();

    std::shared_ptr<Library> library_;
    std::shared_ptr<QueryPlan> plan_;
    std::string source_;
    std::string error_;
    std::uint64_t run_generation_ = 0;
    std::vector<long long> keys_;  // keyed sources
    std::vector<Value> cells_;     // other sources: the whole result
    long position_ = -1;
    bool on_deleted_ = false;
    RowCache cache_;
    EditMode edit_ = EditMode::None;
    std::vector<Value> pending_;
    std::vector<bool> dirty_;
    long long last_modified_ = 0;
};

// A recordset on a source of an open library, as the screen sorts open one.
Recordset OpenRecordset(const std::shared_ptr<Library>& library, std::string record_source);

}  // namespace tavora
