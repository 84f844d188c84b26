#include "core/windows/qx_main.h"

#include "runtime/convert.h"

namespace tavora {

namespace {

struct MenuCaption {
    const char* control;
    const char* caption;
};

constexpr MenuCaption kMenus[] = {
    {"mnu_File", "&File"},
    {"mnu_File_Run", "&Run Juke Box"},
    {"mnu_File_Pause", "&Pause"},
    {"Mnu_Aut_Add", "&Auto Add Wizard"},
    {"Mnu_Find", "&Find And Edit"},
    {"Log_View", "Log Viewer"},
    {"B_Cast", "&Live Recorder"},
    {"Stn_Mgr", "&Station Manager Plug In"},
    {"WebR_Wiz", "&Web Request Page Wizard"},
    {"mnu_File_Exit", "E&xit"},
    {"Request_list", "&Request List"},
    {"mnu_View_Schedule1", "&Schedule"},
    {"mnu_Options_DisplayTime", "Progra&m Director"},
    {"Catover", "Category &Override"},
    {"CD_PLYR", "View/Hide CD Player"},
    {"Get_Email", "&Auto Requests"},
    {"AdvSched", "Advanced Sched"},
    {"QXQuery", "Query"},
    {"ChartDir", "Chart Director"},
    {"mnu_Options_AutoRewind", "M&usic Category Setup"},
    {"mnu_Options_Setup", "S&etup"},
    {"Fit_Wind", "&Fit Window 800x600"},
    {"AdBrowse", "&Ad Browser"},
    {"About_QX", "About TQX"},
    {"Quick_Help", "Quick Help"},
    {"sysinf", "System Info"},
    {"LgL_Inf", "Legal Info"},
};

constexpr const char* kPanelTips[] = {
    "Current Date",
    "Current Time",
    "Internal Status",
    "Max Time Until Next Request",
    "Total Selections Played This Session",
    "Total HOT Selections Played This Session",
    "Pgm Mgr Selections Not Found",
    "Requests Played This Session",
};

}  // namespace

QXMain::QXMain(Station& station) : Form("QXMain"), station_(station) {
    Caption = "Tavora Music System";
    for (const MenuCaption& menu : kMenus)
        find(menu.control)->Caption = menu.caption;
    for (int number = 1; number <= 8; ++number) {
        add("Panel", number).ToolTipText = kPanelTips[number - 1];
    }
    on_click("mnu_File", [this](int) { mnu_File_Click(); });
    on_click("Fit_Wind", [this](int) { Fit_Wind_Click(); });
}

void QXMain::Count(int number) {
    Control& panel = Panel(number);
    panel.Text = number_text(Val(panel.Text) + 1);
}

void QXMain::mnu_File_Click() {
    if (station_.Run_Mode == 1) {
        mnu_File_Run.Enabled = false;
        Caption = " Tavora Music System REMOTE Access Mode (JukeBox Is Disabled)";
    } else {
        mnu_File_Run.Enabled = true;
    }
}

void QXMain::Form_Resize() {
    if (WindowState == 0) {
        station_.Wnd_Left = Left;
        station_.Wnd_Top = Top;
        station_.Wnd_Width = Width;
        station_.Wnd_Height = Height;
    }
    station_.Wnd_State = WindowState;
}

void QXMain::Fit_Wind_Click() {
    WindowState = 0;
    Left = 210;
    Height = 7950;
    Width = 11565;
    Top = 525;
}

}  // namespace tavora
