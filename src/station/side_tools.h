#pragma once

#include <string>
#include <vector>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/station.h"
#include "store/library.h"

namespace tavora {

class QXMain;
class frmAbout;

// The web browser window: "&Ad Browser" and "Quick Help" open pages in it.
// `WebBrowser1`'s text is the page shown, a stored path or a URL.
class frmBrowser : public Form {
  public:
    frmBrowser();
    void Navigate(const std::string& page);

    Control& WebBrowser1 = add("WebBrowser1");
    Control& txtAddress = add_text("txtAddress");
    Control& cmdGo = add("cmdGo");
    Control& cmdHome = add("cmdHome");
    Control& cmdClose = add("cmdClose");

    std::string Home = "c:\\tavora\\manual\\tqxops.htm";
};

// The system information window: this machine, the install folder and its
// drive table, the library, the audio device and the versions in use.
class frmSystemInfo : public Form {
  public:
    frmSystemInfo(Station& station, const Services& services, LibraryPool& pool);
    void Form_Load();

    // Lines the front end adds: its toolkit, the audio device and decoder.
    std::vector<std::string> front_end_lines;

    Control& List1 = add_list("List1");
    Control& cmdOK = add("cmdOK");

  private:
    Station& station_;
    const Services& services_;
    LibraryPool& pool_;
};

// The side tools of the Help menu: about, quick help, the ad browser,
// system information and the legal text.
void wire_side_tools(QXMain& main, frmAbout& about, frmBrowser& browser, frmSystemInfo& info,
                     const Services& services);

// The files `--install` writes into the manual folder.
inline constexpr const char* kQuickHelp = "c:\\tavora\\manual\\tqxops.htm";
inline constexpr const char* kLegalText = "c:\\tavora\\manual\\legal.txt";
inline constexpr const char* kAdPage = "c:\\tavora\\manual\\tqxhead1.htm";

}  // namespace tavora
