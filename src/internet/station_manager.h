#pragma once

#include <functional>
#include <string>

#include "core/services.h"
#include "core/station.h"

namespace tavora {

// The link to the station manager, a separate program: starting it, and
// taking its break orders from qxsm.ini into the break variables.
class StationManagerLink {
  public:
    StationManagerLink(Station& station, const Services& services)
        : station_(station), services_(services) {}

    // The menu entry: a warning, then the program is started. With the
    // station's own web server on, its page opens in the browser instead.
    void Stn_Mgr_Click();
    // The address of the station's own request page; empty while its web
    // server is off.
    std::function<std::string()> web_page;
    // Called by the transport every 150 ticks. A file is read and deleted
    // unless an order is armed already (it waits) or this is remote use (it
    // is the other machine's).
    void SM_Check();

  private:
    Station& station_;
    const Services& services_;
};

}  // namespace tavora
