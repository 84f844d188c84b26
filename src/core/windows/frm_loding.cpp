#include "core/windows/frm_loding.h"

namespace tavora {

frmLoding::frmLoding() : Form("frmLoding") {
    Caption = "Loading Next Selection";
    for (int number = 1; number <= 5; ++number)
        add("Line", number);
}

void frmLoding::ClearLines() {
    for (int number = 1; number <= 5; ++number)
        Line(number).Caption.clear();
}

}  // namespace tavora
