#pragma once

#include <map>
#include <string>

#include "store/library.h"
#include "store/recordset.h"

namespace tavora {

// Pairs a database path and a record source with a current recordset, as
// the screens and the selection hold their data. Setting DatabaseName or
// RecordSource takes effect at the next Refresh.
class DataControl {
  public:
    explicit DataControl(LibraryPool& pool, FileKind kind = FileKind::Library)
        : pool_(pool), kind_(kind) {}

    std::string DatabaseName;  // a native path
    std::string RecordSource;  // a stored query name, a table name or SQL text
    std::string Tag;
    std::string Caption;

    // Opens the database and source when either was changed, else runs the
    // source again if the library changed since; then goes to the first
    // row. On failure the recordset is empty and error() says why. A source
    // taken up again is only run again if a write since could change it.
    bool Refresh();
    tavora::Recordset& Recordset() { return recordset_; }
    // Puts a recordset opened elsewhere behind the control.
    void SetRecordset(tavora::Recordset recordset);
    // Writes a pending Edit or AddNew.
    bool UpdateRecord();
    // Drops a pending edit, so the current row shows what the file holds.
    void UpdateControls() { recordset_.CancelUpdate(); }

    const std::string& error() const { return error_; }

  private:
    LibraryPool& pool_;
    FileKind kind_;
    tavora::Recordset recordset_;
    // The other sources of the open database, as they were left.
    std::map<std::string, tavora::Recordset, std::less<>> parked_;
    std::string open_database_;
    std::string error_;
};

}  // namespace tavora
