#pragma once

#include <string>

#include "core/services.h"
#include "core/station.h"
#include "requests/request_form.h"

namespace tavora {

// The web list: the library in the title sort, one record a line, in
// web\qxstat.txt, from which the station manager builds the request pages.
// Taking a Request, it wires that window's "H" button and its daily run.
class WebList {
  public:
    WebList(Request& request, Station& station, const Services& services);

    void wiz_it();
    void Web_List();
    void Command13_Click();
    // The main window's menu entry.
    void WebR_Wiz_Click();

  private:
    std::string line_of(Recordset& r, double now) const;

    Request& request_;
    Station& station_;
    const Services& services_;
};

}  // namespace tavora
