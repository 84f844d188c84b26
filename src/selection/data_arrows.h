#pragma once

#include "store/recordset.h"

namespace tavora {

// The four arrows of a data control, 0 to 3: first, previous, next, last.
// A pending edit is dropped, and a move past either end stays on the row
// at that end.
inline void press_arrow(Recordset& rows, int arrow) {
    rows.CancelUpdate();
    switch (arrow) {
        case 0:
            rows.MoveFirst();
            break;
        case 1:
            rows.MovePrevious();
            break;
        case 2:
            rows.MoveNext();
            break;
        default:
            rows.MoveLast();
            break;
    }
    if (rows.IsBOF()) rows.MoveFirst();
    if (rows.IsEOF()) rows.MoveLast();
}

}  // namespace tavora
