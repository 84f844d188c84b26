#pragma once

#include "core/forms/form.h"

namespace tavora {

// The "Loading Next Selection" panel: a count or status label and five song
// lines, shown while a set is chosen.
class frmLoding : public Form {
  public:
    frmLoding();

    // Line 1 to 5.
    Control& Line(int number) { return *find("Line", number); }
    void ClearLines();

    Control& Label1 = add("Label1");
};

}  // namespace tavora
