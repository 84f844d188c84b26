#include "store/copy_row.h"

#include <algorithm>

namespace tavora {

bool copy_row_by_ordinal(Recordset& from, Recordset& to, int first, int last) {
    if (from.AbsolutePosition() < 0 || !to.AddNew()) return false;
    last = std::min({last, from.field_count() - 1, to.field_count() - 1});
    for (int ordinal = first; ordinal <= last; ++ordinal) {
        const Value value = from.Fields(ordinal);
        if (!to.SetField(ordinal, value)) {
            to.CancelUpdate();
            return false;
        }
    }
    return to.Update();
}

}  // namespace tavora
