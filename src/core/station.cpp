#include "core/station.h"

#include <cmath>
#include <cstdio>

namespace tavora {

namespace {

// Month and day of a date double, without the runtime's calendar: the log
// name is all that needs them here and it must not fail on any date.
std::string log_name_for(double now) {
    // Civil date from days since 1899-12-30 (Howard Hinnant's algorithm).
    long z = static_cast<long>(std::floor(now)) - 25569 + 719468;  // to days since 0000-03-01
    long era = (z >= 0 ? z : z - 146096) / 146097;
    long doe = z - era * 146097;
    long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    long mp = (5 * doy + 2) / 153;
    long day = doy - (153 * mp + 2) / 5 + 1;
    long month = mp < 10 ? mp + 3 : mp - 9;
    return "C:\\tavora\\qxl" + std::to_string(month) + std::to_string(day) + ".log";
}

}  // namespace

Station::Station() {
    for (int slot = 0; slot < kSlots; ++slot)
        clear_slot(slot);
    Active_Cats.fill("NONE");
    BP_Titles.fill("a");
    BP_Artists.fill("a");
    IIS_Recent.fill("None");
    Stat_Hist.fill("None");
}

void Station::set_defaults(double now) {
    *this = Station();
    Over_End = now;
    IIS_LastTime = now;
    Log_Name = log_name_for(now);
    Look_Play = now;
    Look_Sched = now;
    Clock_Play = std::floor(now);
    Clock_Sched = std::floor(now);
}

void Station::clear_slot(int slot) {
    Slot_File[slot].clear();
    Slot_Title[slot].clear();
    Slot_Started[slot] = 1;
    Slot_Ready[slot] = 0;
    Slot_RecID[slot] = 0;
    Slot_Special[slot] = 0;
    Slot_Vol[slot] = 0;
    Slot_Start[slot] = 0;
    Slot_End[slot] = -1;
    Slot_MixIn[slot] = 0;
    Slot_MixOut[slot] = 0;
    Slot_FadeIn[slot] = false;
    Slot_FadeOut[slot] = false;
    Slot_Length[slot] = 0;
}

}  // namespace tavora
