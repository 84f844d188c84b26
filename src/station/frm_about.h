#pragma once

#include "core/forms/form.h"

namespace tavora {

// The about window, which start-up also shows as its splash.
class frmAbout : public Form {
  public:
    frmAbout() : Form("frmAbout") {
        Caption = "About TQX";
        cmdOK.Caption = "OK";
    }

    Control& cmdOK = add("cmdOK");
    Control& picIcon = add("picIcon");
};

}  // namespace tavora
