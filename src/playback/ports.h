#pragma once

#include <functional>
#include <string>

#include "core/forms/control.h"
#include "core/forms/form.h"

namespace tavora {

// Selection, as the bank reaches it: `auto_run` fills the slot `Cue_Slot`
// (or sets `PL_Marker` when it found nothing); `Check_Sched` runs the
// schedule engine and any day roll-over. The station wires the real ones.
struct SelectionPort {
    std::function<void()> auto_run;
    std::function<void()> Check_Sched;
};

// The controls of the request screen that the bank reads and writes; the screen
// sits above playback, so the station hands them over. A missing one is
// passed over.
struct RequestPort {
    Form* form = nullptr;
    Control* list = nullptr;          // the jukebox list, held while Load_Up runs
    Control* label = nullptr;         // the list's label
    Control* break_button = nullptr;  // `Command7`, "Break" or "Resume"
    Control* picture = nullptr;       // the video picture frame
    std::function<void()> refresh;    // its data control
    // The flag that makes the screen flash and its break indicator yellow,
    // or back to the button face.
    std::function<void(bool on)> flash;
};

// Other windows that the transport touches: the station manager's break
// file, the internet window, the CD player and the record wizard. Any may be
// left empty.
struct StationPort {
    std::function<void()> SM_Check;       // reads the break file into Brk_* and SM_State
    std::function<void()> save_internet;  // `TQXi_Sav` when `Mailfrm` is loaded and visible
    std::function<void()> end_program;
    std::function<bool()> cd_shown;
    std::function<void()> CDButt_Click;
    std::function<void()> unload_cd;
    // Shows the CD player and plays the disc; false when it would not play.
    std::function<bool()> CDAutplay;
    std::function<void()> Mnu_Aut_Add_Click;
    std::function<void(bool on)> Ply7_Box;  // the Setup screen's seventh-player box
    std::function<void(int slot)> on_air;   // a player has started the slot: the recorder's title
};

// Told of everything that airs, for the simulator's event log and the tests.
class PlaybackObserver {
  public:
    virtual ~PlaybackObserver() = default;
    // Selection has put a record into `slot`.
    virtual void committed(int /*slot*/) {}
    // Player `player` (1 to 7) changed its play state; `slot` is the slot it
    // plays (14 for player 7).
    virtual void state_changed(int /*player*/, int /*slot*/, int /*state*/) {}
    // The CD's player changed its play state.
    virtual void cd_state_changed(int /*state*/) {}
    // The run has stopped for good, with the words shown to the operator.
    virtual void run_stopped(const std::string& /*message*/) {}
};

}  // namespace tavora
