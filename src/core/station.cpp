#include "core/station.h"

#include <cmath>

#include "core/log/play_log.h"

namespace tavora {

Station::Station() {
    for (int slot = 0; slot < kSlots; ++slot)
        clear_slot(slot);
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

void Station::copy_slot(int from, int to) {
    Slot_File[to] = Slot_File[from];
    Slot_Title[to] = Slot_Title[from];
    Slot_RecID[to] = Slot_RecID[from];
    Slot_Special[to] = Slot_Special[from];
    Slot_Vol[to] = Slot_Vol[from];
    Slot_Start[to] = Slot_Start[from];
    Slot_End[to] = Slot_End[from];
    Slot_MixIn[to] = Slot_MixIn[from];
    Slot_MixOut[to] = Slot_MixOut[from];
    Slot_FadeIn[to] = Slot_FadeIn[from];
    Slot_FadeOut[to] = Slot_FadeOut[from];
    Slot_Length[to] = Slot_Length[from];
}

}  // namespace tavora
