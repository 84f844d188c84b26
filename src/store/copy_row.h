#pragma once

#include "store/recordset.h"

namespace tavora {

// Adds a row to `to` holding the current row of `from` field by field, for
// ordinals first to last; the key and later fields are left to the store.
// This is how an import copies a row between libraries of the same layout.
bool copy_row_by_ordinal(Recordset& from, Recordset& to, int first = 1, int last = 62);

}  // namespace tavora
