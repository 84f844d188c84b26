#include "internet/menus.h"

namespace tavora {

void wire_request_menus(QXMain& main, Request& request, Mailfrm& mail, WebList& web,
                        StationManagerLink& manager) {
    main.on_click("Stn_Mgr", [&manager](int) { manager.Stn_Mgr_Click(); });
    main.on_click("WebR_Wiz", [&web](int) { web.WebR_Wiz_Click(); });
    main.on_click("Get_Email", [&mail](int) { mail.Form_Load(); });
    main.on_click("Request_list", [&request](int) {
        if (request.Visible) {
            request.Visible = false;
            return;
        }
        request.Left = 0;
        request.Top = 0;
        if (!request.Loaded) request.Form_Load();
        request.Visible = true;
    });
}

}  // namespace tavora
