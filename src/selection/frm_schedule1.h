#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/station.h"
#include "core/windows/qx_main.h"
#include "selection/check_time.h"
#include "store/data_control.h"

namespace tavora {

class frmTypeLookup;

// "Schedule": the screen of the Schedule table, and the owner of the
// schedule check that turns the running entries into `Schedule Select` on
// every recording.
class frmSchedule1 : public Form {
  public:
    // `setup` is a data control on the Setup table of the settings file,
    // for the calendar roll-over.
    frmSchedule1(Station& station, Services& services, LibraryPool& pool, QXMain& main,
                 frmTypeLookup& types, DataControl& setup);

    DataControl datPrimaryRS;  // the schedule as the editor lists it, by name
    DataControl MainDB;        // Recordings1
    DataControl DataSched;     // Schedule, in table order
    DataControl DataType;      // the categories the editor offers
    DataControl DataTcheck;    // SRequest, for the wait estimate

    // What the last check made active: the categories (1 to 100, "NONE"
    // past the last), the next free place, and whether every chart counts.
    // Sched_Hit is the verdict on the entry being judged; Sched_Changed
    // tells the editor the active set changed.
    std::array<std::string, 101> Active_Cats;
    int Active_Next = 0;
    int All_Charts = 0;
    int Sched_Hit = 0, Sched_Changed = 0, Sched_Stopped = 0;

    // The players' state for the wait estimate; set by the station.
    NowPlaying players;
    // Runs the wait estimate; by default on DataTcheck. The station points
    // it at the Request window's own.
    std::function<void()> CheckTime;

    Control& Label1 = add("Label1");

    // The editor: the record actions, the two tabs, the boxes of the current
    // entry and the grid.
    Control& cmdAdd = add("cmdAdd");
    Control& cmdDelete = add("cmdDelete");
    Control& cmdUpdate = add("cmdUpdate");
    Control& cmdRefresh = add("cmdRefresh");
    Control& cmdClose = add("cmdClose");
    Control& SSTab1 = add("SSTab1");           // Value: 0 the form, 1 the grid
    Control& DBCombo1 = add_list("DBCombo1");  // the category
    Control& UpDown1 = add("UpDown1");         // raises UpClick and DownClick
    Control& txtFields(int index) { return *find("txtFields", index); }
    Control& chkFields(int index) { return *find("chkFields", index); }
    // The grid's columns: Power, Name, Type1, Run Now, STime, ETime.
    Control& DataGrid1(int column) { return *find("DataGrid1", column); }

    // Sets the active library on all five data controls.
    void Form_Load();
    void Check_Sched();

    // At each move of the editor's list.
    void datPrimaryRS_Reposition();
    void cmdAdd_Click();
    void cmdDelete_Click();
    void cmdUpdate_Click();
    void cmdRefresh_Click();
    void SSTab1_Click();
    void chkFields_Click(int index);
    void UpDown1_Change(int step);
    // A click in the grid on the current row, by column.
    void DataGrid1_Click(int column);

  private:
    void add_editor_controls();
    void show_entry();
    // Shows a category in the box, on its row of the list when it has one.
    void show_category(const std::string& category);
    // The reason the boxes can't be stored, or empty.
    std::string check_entry();
    void write_entry();
    void move(int button);
    bool is_always();
    bool active(const std::string& category) const;
    void reset_weights();
    void judge_entry(bool weights_on, class Recordset& entry);
    void activate(const std::string& category, bool weights_on);
    void rewrite_schedule_select();
    std::shared_ptr<Library> library();

    Station& s_;
    Services& services_;
    QXMain& main_;
    frmTypeLookup& types_;
    DataControl& setup_;
    std::string roll_over_failure_;  // the reason last told, so each is told once
    bool adding_ = false;            // a new entry waits for its Update
};

}  // namespace tavora
