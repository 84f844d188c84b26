#include "platform/clock.h"
#include "platform/dialogs.h"
#include "requests/request_form.h"
#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

constexpr long kIdleLabel = 12632064;

// Flips a two-state switch whose caption is its state.
void toggle(Control& button, const std::string& off, const std::string& on) {
    if (button.Caption == off) {
        button.Caption = on;
        button.BackColor = kGreen;
    } else {
        button.Caption = off;
        button.BackColor = kButtonFace;
    }
}

}  // namespace

void Request::TimerMar_Timer() {
    Station& s = station_;
    if (s.BP_On) {
        CmdBP.Caption = "BP" + Str(static_cast<double>(s.BP_Block));
        CmdBP.BackColor = kGreen;
    } else {
        CmdBP.Caption = "BP";
        CmdBP.BackColor = kButtonFace;
    }

    const double time = TimeValueOf(services_.clock.Now());
    if (time > TimeSerial(0, 1, 0) && time < TimeSerial(0, 30, 0)) {
        if (s.Auto_PL == 1) s.Auto_PL = 0;
    } else if (Auto_PL_First == 1) {
        s.Auto_PL = 0;
        Auto_PL_First = 0;
    }
    if (s.Run_Mode > 0) s.Auto_PL = 1;
    // The daily run waits until the open requests have been played out.
    if (!s.Req_Avail && time > TimeSerial(0, 30, 0) && s.Auto_PL == 0) Auto_Playlists();

    if (s.Run_Mode == 2) {
        Frame4.Visible = true;
        Label2.Visible = true;
        s.Run_Mode = 0;
        if (Run_Command) Run_Command();
        Frame4.Visible = false;
        Label2.Visible = false;
    }
    if (s.Load_Busy >= 1 || s.Load_Limit > 0 || s.Load_Due == 1) return;

    if (Command6.Caption == "P" && Stat_Slot != s.Ply_Now && PlayState &&
        PlayState(s.Ply_Now) == 2) {
        Stat_Write();
    }
    Label15.ForeColor = kGreen;
    const std::string shortest = Format(s.Look_Play, "hh:mm:ss");
    const std::string longest = Format(s.Look_Sched, "hh:mm:ss");
    Label15.Caption = "Wait For Next Request Is: " + shortest;
    if (shortest != longest) Label15.Caption += " to: " + longest;
    if (s.Req_Hold == 1) {
        Label15.Caption = "A L L  R E Q U E S T S  A R E  O N  H O L D";
        Label15.ForeColor = kYellow;
    }
}

void Request::Auto_Playlists() {
    Station& s = station_;
    if (wiz_it) wiz_it();
    Frame4.Visible = true;
    Label2.Visible = true;
    // Three presses a list: pick or create the marker, edit, save.
    for (s.Auto_PL = 2; s.Auto_PL <= 5; ++s.Auto_PL) {
        Auto_PL_Hit = 0;
        BtnSrt_Click(11);
        if (s.PL_Build == 1) BtnSrt_Click(11);
        BtnSrt_Click(11);
    }
    if (s.PL_Build > 1) BtnSrt_Click(11);
    s.Auto_PL = 1;
    datPrimaryRS.RecordSource = "Title Sort";
    datPrimaryRS.Refresh();
    read_extent();
    List_Top = 0;
    Label16.Caption = "Sorted By TITLE Only";
    Show_Page();
    if (!(Video_On && Video_On())) Frame4.Visible = false;
    Label2.Visible = false;
}

void Request::CmdBP_Click() {
    station_.BP_On = !station_.BP_On;
    if (station_.BP_On) {
        services_.dialogs.MsgBox("Block Party will reset at midnight automatically",
                                 Buttons::OKOnly, "Block Party Info");
    }
}

void Request::Command1_Click() {
    toggle(Command1, "S Off", "S On");
    Show_Page();
}

void Request::Command10_Click() {
    toggle(Command10, "H Off", "H On");
    Show_Page();
}

void Request::Command6_Click() {
    Station& s = station_;
    ++Marq_Page;
    if (Marq_Page >= 11) {
        Marq_Page = 0;
        s.Marq_On = false;
        ReqBrowser1.Visible = false;
        ReqBrowser1.Tag = "0";
        return;
    }
    s.Marq_On = true;
    ReqBrowser1.Visible = true;
    ReqBrowser1.Tag = "1";
    Marq_File = "c:\\tavora\\manual\\tqxhead" + Trim(Str(static_cast<double>(Marq_Page))) + ".htm";
    ReqBrowser1.Text = Marq_File;  // the page the browser navigates to
}

void Request::Command12_Click() {
    ReqBrowser1.Visible = !ReqBrowser1.Visible;
}

void Request::Image1_Click() {
    Image1.Visible = false;
    Frame4.Visible = false;
    if (Video_Off) Video_Off();
}

void Request::Form_MouseMove() {
    if (Idle_Count == 0) {
        for (int i = 0; i < 26; ++i)
            BLtr(i).BackColor = kButtonFace;
        for (int i = 1; i <= kRows; ++i)
            Row_Label(i).BackColor = kIdleLabel;
    }
    Idle_Count = 6;
}

}  // namespace tavora
