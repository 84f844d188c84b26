#pragma once

#include "core/forms/form.h"

namespace tavora {

// The jukebox request list, the screen in front while the station idles.
class Request : public Form {
  public:
    Request() : Form("Request") { Caption = "Request List"; }
};

}  // namespace tavora
