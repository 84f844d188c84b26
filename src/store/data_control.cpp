#include "store/data_control.h"

#include <utility>

namespace tavora {

bool DataControl::Refresh() {
    error_.clear();
    const bool same_source = recordset_.is_open() && open_database_ == DatabaseName &&
                             recordset_.source() == RecordSource;
    bool ok;
    if (same_source) {
        ok = recordset_.Refresh();
    } else if (open_database_ == DatabaseName && recordset_.is_open() &&
               parked_.count(RecordSource) != 0) {
        auto parked = parked_.extract(RecordSource);
        parked_.insert_or_assign(recordset_.source(), std::move(recordset_));
        recordset_ = std::move(parked.mapped());
        // As a source opened afresh would, it sees another program's writes.
        recordset_.library()->look_outside();
        ok = recordset_.Refresh();
    } else {
        const Library::Opened opened = pool_.open(DatabaseName, kind_);
        if (!opened.library) {
            recordset_ = tavora::Recordset();
            parked_.clear();
            open_database_.clear();
            error_ = opened.error;
            return false;
        }
        if (open_database_ == DatabaseName && recordset_.is_open()) {
            parked_.insert_or_assign(recordset_.source(), std::move(recordset_));
        } else {
            parked_.clear();
        }
        open_database_ = DatabaseName;
        ok = recordset_.Open(opened.library, RecordSource);
    }
    if (!ok) error_ = recordset_.error();
    return ok;
}

void DataControl::SetRecordset(tavora::Recordset recordset) {
    recordset_ = std::move(recordset);
    parked_.clear();
    if (recordset_.library() != nullptr) {
        open_database_ = recordset_.library()->path().string();
        DatabaseName = open_database_;
        RecordSource = recordset_.source();
    }
}

bool DataControl::UpdateRecord() {
    if (!recordset_.is_editing()) return true;
    const bool ok = recordset_.Update();
    if (!ok) error_ = recordset_.error();
    return ok;
}

}  // namespace tavora
