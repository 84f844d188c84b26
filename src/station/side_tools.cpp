#include "station/side_tools.h"

#include <sqlite3.h>
#include <sys/utsname.h>

#include "core/version.h"
#include "core/windows/qx_main.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "station/frm_about.h"
#include "store/data_control.h"

namespace tavora {

frmBrowser::frmBrowser() : Form("frmBrowser") {
    Caption = "Tavora Browser";
    cmdGo.Caption = "&Go";
    cmdHome.Caption = "&Home";
    cmdClose.Caption = "&Close";
    on_click("cmdGo", [this](int) { Navigate(txtAddress.Text); });
    on_click("cmdHome", [this](int) { Navigate(Home); });
    on_click("cmdClose", [this](int) { Visible = false; });
}

void frmBrowser::Navigate(const std::string& page) {
    WebBrowser1.Text = page;
    txtAddress.Text = page;
}

frmSystemInfo::frmSystemInfo(Station& station, const Services& services, LibraryPool& pool)
    : Form("frmSystemInfo"), station_(station), services_(services), pool_(pool) {
    Caption = "System Info";
    cmdOK.Caption = "OK";
    on_click("cmdOK", [this](int) { Visible = false; });
}

void frmSystemInfo::Form_Load() {
    List1.Clear();
    utsname host{};
    if (uname(&host) == 0) {
        List1.AddItem(std::string("Machine: ") + host.nodename + " (" + host.sysname + " " +
                      host.release + ", " + host.machine + ")");
    }
    const PathMap& paths = services_.paths;
    List1.AddItem("Install folder: " + paths.install_folder().string() + " (c:\\tavora)");
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        if (const auto folder = paths.DriveFolder(letter))
            List1.AddItem(std::string("Drive ") + letter + ": " + folder->string());
    }
    std::string library = "Library: " + station_.Act_Db;
    DataControl rows(pool_);
    rows.DatabaseName = paths.ToNative(station_.Act_Db).path;
    rows.RecordSource = "Recordings1";
    if (files::Exists(rows.DatabaseName) && rows.Refresh()) {
        library += ", " + std::to_string(rows.Recordset().RecordCount()) + " recordings";
    } else {
        library += " (not found)";
    }
    List1.AddItem(library);
    List1.AddItem(std::string("Tavora ") + kVersion + ", SQLite " + sqlite3_libversion());
    for (const auto& line : front_end_lines)
        List1.AddItem(line);
}

void wire_side_tools(QXMain& main, frmAbout& about, frmBrowser& browser, frmSystemInfo& info,
                     const Services& services) {
    main.on_click("About_QX", [&about](int) {
        about.Loaded = true;
        about.cmdOK.Visible = true;
        about.Visible = true;
    });
    about.on_click("cmdOK", [&about](int) { about.Visible = false; });
    main.on_click("Quick_Help", [&browser](int) {
        browser.Navigate(kQuickHelp);
        browser.Visible = true;
    });
    main.on_click("AdBrowse", [&browser](int) {
        browser.Navigate(kAdPage);
        browser.Visible = true;
    });
    main.on_click("sysinf", [&info](int) {
        info.Form_Load();
        info.Visible = true;
    });
    main.on_click("LgL_Inf", [&services](int) {
        const auto legal = services.paths.ToNative(kLegalText);
        if (!files::Exists(legal.path) || !services.launcher.OpenTextFile(legal.path)) {
            services.dialogs.MsgBox("The legal text could not be shown: " + legal.path);
        }
    });
}

}  // namespace tavora
