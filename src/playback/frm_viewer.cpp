#include "playback/frm_viewer.h"

namespace tavora {

frmViewer::frmViewer() : Form("frmViewer") {
    Caption = "Now Playing";
    for (int i = 0; i <= 21; ++i)
        add("Label1", i);
    Label1(0).Caption = "Next Set";
    Label1(21).Caption = "NOTICE: Default Mix For 1st Set is 1 second";
    for (int i = 1; i <= 6; ++i) {
        Control& clear = add("ClrCue", i);
        clear.Caption = "X";
        clear.Visible = false;
    }
    Cmd7th.Caption = "Ply7 Off";
    Cmd7th.BackColor = kOff;
    CmdSc.Caption = "M7";
    CmdSc.BackColor = kOn;
    CmdSc.Visible = false;
    CDButt.Caption = "View CD";
    CDButt.BackColor = kOff;
    VidButt.Caption = "Video Off";
    VidButt.BackColor = kOff;
    Command7.Caption = "Skip/Eject";
}

MpFm::MpFm(int n) : Form("MpFm" + std::to_string(n)), number(n) {
    Caption = "Player" + std::to_string(n);
}

FrmOnAir::FrmOnAir() : Form("FrmOnAir") {
    Caption = "On Air";
    for (int i = 0; i <= 3; ++i)
        add("LblComing", i);
    LblTalk.Caption = "Talk Time This Mix:";
    LblIn.Caption = "Voice Over In:";
    LblInSec.Caption = "Sec";
    LblLeft.Caption = "Voice Over Remaining:";
    LblLeftSec.Caption = "Sec";
    CmdPause.Caption = "&Pause At End";
    CmdResume.Caption = "&Resume";
    CmdResume.Visible = false;
}

}  // namespace tavora
