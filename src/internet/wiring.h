#pragma once

#include "core/station.h"
#include "core/windows/qx_main.h"
#include "internet/mailfrm.h"
#include "internet/station_manager.h"
#include "internet/web_list.h"
#include "playback/frm_viewer.h"
#include "playback/playback.h"
#include "requests/request_form.h"

namespace tavora {

// The main window's menu entries that open the request list, the internet
// window, the web list export and the station manager.
void wire_request_menus(QXMain& main, Request& request, Mailfrm& mail, WebList& web,
                        StationManagerLink& manager);

// The request window and the bank, both ways: what the window reads of the
// players and the look-ahead, and what the bank reads and writes of the
// window, the break file and the internet window.
void wire_request_window(Station& station, QXMain& main, Request& request, Mailfrm& mail,
                         StationManagerLink& manager, Playback& playback, frmViewer& viewer);

}  // namespace tavora
