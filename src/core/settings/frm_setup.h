#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/settings/extensions.h"
#include "core/station.h"
#include "store/data_control.h"

namespace tavora {

// The Setup screen: the first row of Setup, the drive alias table, the
// session settings bound to the station's variables, and the commands that
// change the active library. Those commands end the program: the next start
// applies what they wrote, so memory and files never differ.
class frmSetup : public Form {
  public:
    frmSetup(Station& station, const Services& services, LibraryPool& pool);

    // Runs the one shutdown path; set by the station.
    std::function<void()> End_Program;
    // Told of what the station does beyond the rules, once Save And Close
    // has written it to tavora.ini.
    std::function<void(const Extensions&)> Extensions_Saved;

    // Binds the data controls to Setup.mdb, puts the variables into the
    // lists and boxes, and puts the row into Edit so bound boxes can write.
    void Form_Load();
    // Saves qxbp.ini.
    void Form_Unload();

    DataControl datPrimaryRS;  // select * from [Setup]
    DataControl Data1;         // DriveLookup

    void Command1_Click();  // Save And Close
    void Command2_Click();  // Change
    void CmdRestore_Click();
    void Command7_Click();  // New
    void Command8_Click();  // Clear
    void Command4_Click();  // MFilter
    void Command5_Click();  // Add alias
    void Command6_Click();  // Del alias
    void Command9_Click();  // antiskip info
    void chkFields_Click(int index);
    void BPCkeck_Click(int index);
    void BPCkeck_LostFocus(int index);

    Control& Command1 = add("Command1");
    Control& Command2 = add("Command2");
    Control& CmdRestore = add("CmdRestore");
    Control& Command7 = add("Command7");
    Control& Command8 = add("Command8");
    Control& Command4 = add("Command4");
    Control& Command5 = add("Command5");
    Control& Command6 = add("Command6");
    Control& Command9 = add("Command9");
    Control& lblVersion = add("lblVersion");
    Control& txtActive = add_text("txtActive");  // Active Database
    Control& txtNewDay = add_text("txtNewDay");  // Time For New Day
    Control& txtDay = add_text("txtDay");        // Current Day
    Control& txtWeek = add_text("txtWeek");      // Current Week
    Control& txtMonth = add_text("txtMonth");    // Current Month
    Control& txtAlias = add_text("txtAlias");    // DriveLookup.AliasDrive
    Control& txtDrive = add_text("txtDrive");    // DriveLookup.Drive
    // Beyond the rules, from tavora.ini: the dead-air watchdog and loudness.
    Control& chkDeadAir = add_check("chkDeadAir");
    Control& txtDeadAirLevel = add_text("txtDeadAirLevel");
    Control& txtDeadAirHold = add_text("txtDeadAirHold");
    Control& txtDeadAirFolder = add_text("txtDeadAirFolder");
    Control& chkLoudness = add_check("chkLoudness");
    Control& txtLoudTarget = add_text("txtLoudTarget");
    Control& txtLoudCeiling = add_text("txtLoudCeiling");
    Control& chkFields(int index) { return *find("chkFields", index); }
    Control& BPCkeck(int index) { return *find("BPCkeck", index); }
    Control& Combo(int number) { return *find("Combo" + std::to_string(number)); }

  private:
    void bind_lists();
    void read_row_into_boxes();
    void refresh_switches();
    void write_boxes_into_row();
    void say_and_end(const std::string& text, const std::string& title);
    void read_extensions_into_boxes();
    void save_extensions();
    std::filesystem::path home() const;

    Station& station_;
    const Services& services_;
    LibraryPool& pool_;
};

}  // namespace tavora
