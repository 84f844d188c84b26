#pragma once

#include <array>

#include "core/forms/form.h"

namespace tavora {

// The jukebox view: the twelve slots, the status lines of the seven players
// and the bank's buttons. Screen state only; the transport drives it.
class frmViewer : public Form {
  public:
    // Colours of the two-state buttons.
    static constexpr long kOn = 0x80FF80;
    static constexpr long kOff = 0xFF8080;
    static constexpr long kGrey = 0xC0C0C0;

    struct ProgressBar {
        double Max = 0;
        double Value = 0;
    };

    frmViewer();

    // 1 to 6 the current set, 7 to 12 the next, 13 the seventh player's cue,
    // 14 to 19 the players' status lines, 20 the seventh's, 0 "Next Set" or
    // the CD's line, 21 the first set's mix notice.
    Control& Label1(int index) { return *find("Label1", index); }
    Control& ClrCue(int index) { return *find("ClrCue", index); }
    // Players 1 to 7.
    std::array<ProgressBar, 8> ProgressBar1{};

    Control& Cmd7th = add("Cmd7th");
    Control& CmdSc = add("CmdSc");
    Control& CDButt = add("CDButt");
    Control& VidButt = add("VidButt");
    Control& Command7 = add("Command7");

    // The mode of the seventh player, from the caption of `CmdSc`.
    bool mode_m7() const { return CmdSc.Caption == "M7"; }
    bool video_off() const { return VidButt.BackColor == kOff; }
};

// The window of one bank player, `MpFm1` to `MpFm7`.
class MpFm : public Form {
  public:
    explicit MpFm(int number);
    const int number;
};

// The live presenter's pop-up: a countdown to the next mix.
class FrmOnAir : public Form {
  public:
    FrmOnAir();

    // Titles of the active slot and the three after it.
    Control& LblComing(int index) { return *find("LblComing", index); }
    Control& Label1 = add("Label1");  // "SOON" or "N O W"
    Control& LblTalk = add("LblTalk");
    Control& LblTalkValue = add("LblTalkValue");
    Control& LblIn = add("LblIn");
    Control& LblInValue = add("LblInValue");
    Control& LblInSec = add("LblInSec");
    Control& LblLeft = add("LblLeft");
    Control& LblLeftValue = add("LblLeftValue");
    Control& LblLeftSec = add("LblLeftSec");
    Control& LblPause = add("LblPause");
    Control& CmdPause = add("CmdPause");
    Control& CmdResume = add("CmdResume");
};

}  // namespace tavora
