#include "platform/dialogs.h"
#include "playback/playback.h"

namespace tavora {

void Playback::Run() {
    Recordset& rows = library_rows();
    rows.MoveFirst();
    rows.MoveLast();
    // The position counts from 0: 50 rows are refused, as the words don't say.
    if (rows.AbsolutePosition() < 50) {
        services_.dialogs.MsgBox(
            "The Players will not run until you have at least 50 selections in the database.  "
            "Press OK to AutoAdd more records",
            Buttons::OKOnly, "NOT ENOUGH RECORDS!");
        if (station_port.Mnu_Aut_Add_Click) station_port.Mnu_Aut_Add_Click();
        return;
    }
    if (s_.Run_Mode == 1) return;
    Skip_Quiet = 2;
    if (!viewer_QueryUnload()) return;

    viewer_.Loaded = true;
    viewer_.Visible = false;
    const Form* screen = request.form;
    viewer_.Left = screen && screen->Visible ? screen->Left + screen->Width : 0;
    viewer_.Top = 0;
    TimerViewer().SetEnabled(false);
    stopped_ = false;
    main_.MousePointer = 11;
    if (selection_.Check_Sched) selection_.Check_Sched();

    s_.Load_Limit = 1;
    for (int slot = 7; slot <= kCdSlot; ++slot)
        if (slot != kHoldSlot && slot != kSeventhSlot) s_.clear_slot(slot);
    loding_.ClearLines();
    loding_.Loaded = true;
    loding_.Visible = true;
    for (s_.Cue_Slot = 1; s_.Cue_Slot <= 6; ++s_.Cue_Slot) {
        main_.MousePointer = 11;
        const int slot = s_.Cue_Slot;
        if (s_.Slot_Ready[kHoldSlot] == 0) {
            if (!pick()) return;
            s_.Slot_MixOut[slot] = 1;  // the first set always mixes at one second
        } else {
            // A lead waits: it opens the set with its own mix.
            viewer_.Label1(21).Visible = false;
            s_.Cue_File = s_.Slot_File[kHoldSlot];
            take_held(slot);
        }
        if (slot <= 5) {
            loding_.Line(slot).Caption = "QX" + std::to_string(slot) + " - " + s_.Slot_Title[slot];
        }
    }
    s_.Load_Limit = 0;
    s_.Ply_Now = 1;
    s_.Cue_Slot = 1;
    s_.Load_Busy = 1;
    if (!Load_Wavs()) return;
    Ply_View = 1;
    TimerViewer().SetEnabled(true);
    loding_.Visible = false;
    main_.MousePointer = 0;

    Control& video = viewer_.VidButt;
    if ((s_.Vid_On && video.Caption == "Video Off") ||
        (!s_.Vid_On && video.Caption == "Video On")) {
        VidButt_Click();
    }
    Control& mode = viewer_.CmdSc;
    if ((s_.Ply7_View && mode.Caption == "M7") || (!s_.Ply7_View && mode.Caption == "S7")) {
        CmdSc_Click();
    }
    Control& cd = viewer_.CDButt;
    if (((!s_.CD_On && cd.Caption == "Hide CD") || (s_.CD_On && cd.Caption == "View CD")) &&
        station_port.CDButt_Click) {
        station_port.CDButt_Click();
    }
    if (s_.Live_Pop == 1) OnAir_Phase = 1;
}

}  // namespace tavora
