#pragma once

#include <string>

#include "core/forms/form.h"
#include "core/station.h"

namespace tavora {

// The frame window: menus, the status bar and the command that starts the
// players. Menus that open windows of other subsystems are wired by the
// station, which sees them all.
class QXMain : public Form {
  public:
    explicit QXMain(Station& station);

    // Status bar panels 1 to 8: date, time, the two look-ahead clocks, and
    // four counters that start at "0".
    Control& Panel(int number) { return *find("Panel", number); }
    // Adds one to a counter panel.
    void Count(int number);

    // `mnu_File` at opening: remote use disables the Run command for good.
    void mnu_File_Click();
    void Fit_Wind_Click();
    // The saved geometry follows the window only while it is normal; the
    // saved state follows every change.
    void Form_Resize();

    Control& mnu_File = add("mnu_File");
    Control& mnu_File_Run = add("mnu_File_Run");
    Control& mnu_File_Pause = add("mnu_File_Pause");
    Control& Mnu_Aut_Add = add("Mnu_Aut_Add");
    Control& Mnu_Find = add("Mnu_Find");
    Control& Log_View = add("Log_View");
    Control& B_Cast = add("B_Cast");
    Control& Stn_Mgr = add("Stn_Mgr");
    Control& WebR_Wiz = add("WebR_Wiz");
    Control& mnu_File_Exit = add("mnu_File_Exit");
    Control& Request_list = add("Request_list");
    Control& mnu_View_Schedule1 = add("mnu_View_Schedule1");
    Control& mnu_Options_DisplayTime = add("mnu_Options_DisplayTime");
    Control& Catover = add("Catover");
    Control& CD_PLYR = add("CD_PLYR");
    Control& Get_Email = add("Get_Email");
    Control& AdvSched = add("AdvSched");
    Control& QXQuery = add("QXQuery");
    Control& ChartDir = add("ChartDir");
    Control& mnu_Options_AutoRewind = add("mnu_Options_AutoRewind");
    Control& mnu_Options_Setup = add("mnu_Options_Setup");
    Control& Fit_Wind = add("Fit_Wind");
    Control& AdBrowse = add("AdBrowse");
    Control& About_QX = add("About_QX");
    Control& Quick_Help = add("Quick_Help");
    Control& sysinf = add("sysinf");
    Control& LgL_Inf = add("LgL_Inf");

  private:
    Station& station_;
};

}  // namespace tavora
