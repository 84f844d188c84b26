#pragma once

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

    // The players' state for the wait estimate; set by the station.
    NowPlaying players;
    // Runs the wait estimate; by default on DataTcheck. The station points
    // it at the Request window's own.
    std::function<void()> CheckTime;

    Control& Label1 = add("Label1");

    // Sets the active library on all five data controls.
    void Form_Load();
    void Check_Sched();

  private:
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
};

}  // namespace tavora
