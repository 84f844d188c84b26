#pragma once

#include "core/forms/form.h"

namespace tavora {

// The viewer: what plays now and what plays next.
class frmViewer : public Form {
  public:
    frmViewer() : Form("frmViewer") { Caption = "Now Playing"; }
};

}  // namespace tavora
