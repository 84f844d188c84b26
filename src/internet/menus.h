#pragma once

#include "core/windows/qx_main.h"
#include "internet/mailfrm.h"
#include "internet/station_manager.h"
#include "internet/web_list.h"
#include "requests/request_form.h"

namespace tavora {

// The main window's menu entries that open the request list, the internet
// window, the web list export and the station manager.
void wire_request_menus(QXMain& main, Request& request, Mailfrm& mail, WebList& web,
                        StationManagerLink& manager);

}  // namespace tavora
