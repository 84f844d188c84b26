#include "playback/playback.h"
#include "runtime/strings.h"

namespace tavora {

void Playback::rotate_set() {
    Player_Forms(6).Visible = false;
    if (s_.Load_Due == 1) Load_Up();  // the next set must be whole first
    if (stopped_) return;
    Skip_Quiet = 2;
    for (int i = 1; i <= 12; ++i) {
        viewer_.Label1(i).Caption.clear();
        if (i + 14 <= 21) viewer_.Label1(i + 14).Caption.clear();
    }
    s_.Cue_Slot = 1;
    main_.MousePointer = 11;
    // No music may overlap a new set: stop what still plays and come back
    // on the next tick, with the arrays untouched.
    for (s_.Ply_Now = 1; s_.Ply_Now <= 6; ++s_.Ply_Now) {
        if (is_playing(s_.Ply_Now)) {
            Players(s_.Ply_Now).Stop();
            s_.Ply_Now = 6;
            return;
        }
    }
    for (s_.Ply_Now = 1; s_.Ply_Now <= 6; ++s_.Ply_Now) {
        const int slot = s_.Ply_Now;
        s_.Cue_Slot = slot + 6;
        s_.copy_slot(s_.Cue_Slot, slot);
        s_.Slot_Ready[slot] = 1;
        s_.Slot_Started[slot] = 0;
        if (s_.Slot_Vol[slot] > 0) s_.Slot_Vol[slot] = 0;
        s_.clear_slot(s_.Cue_Slot);
        if (s_.Antiskip == 4) s_.Slot_MixOut[slot] += 2;
        if (slot > 1) repair_mix(slot);
        if (slot == 6 && s_.Ply7_On == 1 && viewer_.mode_m7()) s_.Slot_MixOut[6] = 0.5;
    }
    s_.Ply_Now = 6;
    s_.Cue_Slot = 1;
    loding_.ClearLines();
    s_.Load_Busy = 1;
    Load_Wavs();
    viewer_.MousePointer = 11;
}

// The mix of the song before `slot`, for the neighbours it really has now.
void Playback::repair_mix(int slot) {
    const int before = slot - 1;
    const double extra = s_.Antiskip == 4 ? 2 : 0;
    // A spot's shortest mix: a wave file starts at once, others need a second.
    const double shortest = (Right(s_.Slot_File[before], 3) == "wav" ? 0.5 : 1.0) + extra;
    if (s_.Slot_Special[before] != 1) return;
    if (s_.Slot_Special[slot] == 1) {
        s_.Slot_MixOut[before] = shortest;
        return;
    }
    // A spot into a song ends where the song's music starts.
    s_.Slot_MixOut[before] = s_.Slot_MixIn[slot] + extra;
    const double spot = s_.Slot_End[before] - s_.Slot_Start[before];
    if (s_.Slot_End[before] > 0 && s_.Slot_MixOut[before] > spot) s_.Slot_MixOut[before] = spot;
    if (slot <= 2) return;
    // And it must still fit under the mix-out of the song before it.
    const int song = slot - 2;
    if (s_.Slot_End[before] < 0) s_.Slot_End[before] = 0;
    if (s_.Slot_MixOut[song] > s_.Slot_End[before] - s_.Slot_Start[before]) {
        s_.Slot_MixOut[before] =
            s_.Slot_End[before] - (s_.Slot_Start[before] + s_.Slot_MixOut[song]);
        if (s_.Slot_MixOut[before] < 1) s_.Slot_MixOut[before] = shortest;
    }
}

}  // namespace tavora
