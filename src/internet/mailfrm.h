#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/station.h"
#include "platform/event_loop.h"
#include "store/data_control.h"

namespace tavora {

// The internet request interface: on a timer it reads the titles the
// station manager left in newreq.tqf and enters each as an open request.
// Its settings survive restarts in tqxiis.ini.
class Mailfrm : public Form {
  public:
    Mailfrm(Station& station, const Services& services, LibraryPool& pool);

    // Opening the window and closing it.
    void Form_Load();
    void Form_Unload();

    // `TQXi_Sav`: writes the thirteen lines of tqxiis.ini.
    bool TQXi_Sav(const std::filesystem::path& file) const;
    bool TQXi_Sav() const { return TQXi_Sav(ini_file()); }
    // `TQXi_ini`: reads them back; the first item that can't be read ends
    // the reading, and what was read stands.
    void TQXi_ini();

    void TimerMail_Timer();
    // One check of newreq.tqf.
    void Check_File();

    DataControl DataReq;
    // The check's settings and place: the minutes between checks and the
    // count-down, the file and the line reached in it.
    int IIS_Minutes = 10, IIS_MinLeft = 10, IIS_Tick = 10;
    std::string IIS_File = "c:\\tavora\\newreq.tqf";
    int IIS_Line = 0, IIS_Saved = 0;
    // The titles taken lately (1 to 5), against doubles, and the hot
    // request's remaining turns.
    std::array<std::string, 6> IIS_Recent{"None", "None", "None", "None", "None", "None"};
    int Hot_Left = 0;
    std::unique_ptr<Timer> TimerMail;

    Control& Label4 = add("Label4");
    Control& Label12 = add("Label12");
    Control& Label14 = add("Label14");
    Control& List1 = add_list("List1");
    Control& Report = add_text("Report");
    Control& Check1 = add_check("Check1");
    Control& Check2 = add_check("Check2");
    Control& Combo2 = add_list("Combo2");
    Control& Frame1 = add("Frame1");  // the results
    Control& Frame2 = add("Frame2");  // the error report
    Control& Command1 = add("Command1");
    Control& Command2 = add("Command2");
    Control& Command3 = add("Command3");
    Control& Command4 = add("Command4");
    Control& Command5 = add("Command5");
    Control& Command6 = add("Command6");
    Control& Result(int n) { return *find("Label" + std::to_string(n)); }  // 5 to 9

  private:
    std::filesystem::path ini_file() const;
    std::filesystem::path native(const std::string& dos) const;
    bool run_check();
    void reset_list_on_clear();
    bool process_item(const std::string& item, long counter, int& passes);
    bool take_request(long row, double now);
    long find_title(const std::string& title);
    void shift_results();

    Station& station_;
    const Services& services_;
    // Title to its first row in the title sort, built once a check: a
    // long file is matched without walking the library per item.
    std::unordered_map<std::string, long> titles_;
    bool titles_built_ = false;
};

// The eleven lines a missing tqxiis.ini starts with.
bool write_default_tqxiis(const std::filesystem::path& file);

// The first two lines as start-up reads them: IIS_On and IIS_AutoLoad. A
// line that can't be read as a boolean leaves its variable as it was.
void read_tqxiis_switches(Station& station, const std::filesystem::path& file);

}  // namespace tavora
