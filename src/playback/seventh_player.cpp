#include "core/log/play_log.h"
#include "core/settings/session_file.h"
#include "platform/clock.h"
#include "platform/path_map.h"
#include "playback/playback.h"

namespace tavora {

void Playback::start_seventh() {
    viewer_.Label1(21).Visible = false;
    if (s_.Ply7_On == 0 && s_.CD_Mode == 1) {
        cd_take_air();
        return;
    }
    MediaPlayer& seventh = Players(7);
    if (seventh.PlayState() == MediaPlayer::kPlaying || s_.Ply7_On != 1) return;
    Ply7_Secs = 0;
    if (seventh.PlayState() == MediaPlayer::kStopped) {
        if (seventh.SelectionStart() != s_.Slot_Start[kSeventhSlot])
            seventh.SelectionStart(s_.Slot_Start[kSeventhSlot]);
        if (s_.Slot_End[kSeventhSlot] > 0) {
            if (seventh.SelectionEnd() != s_.Slot_End[kSeventhSlot])
                seventh.SelectionEnd(s_.Slot_End[kSeventhSlot]);
        } else {
            seventh.SelectionEnd(seventh.Duration());
        }
    }
    if (seventh.PlayState() == MediaPlayer::kClosed || s_.Live_Mode == 2) return;
    APlayer7().SetEnabled(true);
    s_.Ply_Now = 7;
    seventh.play();
    if (s_.Log_Due == 0) {
        s_.Log_Line = set_end_line(services_.clock.Now(), s_.Slot_Title[6]);
        s_.Log_Due = 1;
    }
    s_.Ply_Now = 7;
    P_view();
    s_.Ply_Now = 6;
    s_.Slot_Started[kSeventhSlot] = 0;
    TimerViewer().SetEnabled(false);  // the end of the tick turns it on again
    show_next_caption(7);
    main_caption("   Tavora Ver Music System ", 14);
    Player_Forms(7).Caption = s_.Slot_Title[kSeventhSlot];
}

// The CD takes the place of the seventh song; the tick stands aside until
// the CD player gives the air back. With nothing cued in slot 15 (the CD
// stopped, or set going after the next set's cue) the drive would play
// whatever track it stands on: the bank goes on, and the CD waits for a cue.
void Playback::cd_take_air() {
    if (s_.Slot_Ready[kCdSlot] == 0) return;
    if (!station_port.CDAutplay || !station_port.CDAutplay()) return;
    if (s_.Log_Due == 0) {
        s_.Log_Line = set_end_line(services_.clock.Now(), s_.Slot_Title[6]);
        s_.Log_Due = 1;
    }
    s_.CD_Mode = 2;
}

void Playback::APlayer7_Timer() {
    if (APlayer7_Busy == 1) return;
    Debug_Step = "Aplay7 Timer";
    ++Ply7_Secs;
    MediaPlayer& seventh = Players(7);
    if (seventh.SelectionEnd() > 0 && seventh.PlayState() == MediaPlayer::kPlaying) {
        const double x = seventh.SelectionEnd() - seventh.CurrentPosition();
        const double y = seventh.Duration() - seventh.CurrentPosition();
        // Far from its end the seventh song holds the next set back; in its
        // last seconds the set may start under it.
        if (x > s_.Ply7_Mix || y > s_.Ply7_Mix) {
            Settle_Count = 0;
        } else if (!viewer_.mode_m7() && !TimerViewer().Enabled()) {
            TimerViewer().SetEnabled(true);
        }
    }
    // "M7" holds the next set for as long as this timer runs; KickOut stops
    // it once the seventh song is over, so the next set can start.
    if (viewer_.mode_m7()) Settle_Count = 0;
    APlayer7_Busy = 1;
    Amovie_fader();
    APlayer7_Busy = 0;
    if (seventh.PlayState() == MediaPlayer::kStopped) KickOut();
}

void Playback::KickOut() {
    Debug_Step = "KickOut";
    APlayer7().SetEnabled(false);
    Player_Forms(7).Visible = false;
    s_.Slot_Started[kSeventhSlot] = 1;
    s_.Slot_Ready[kSeventhSlot] = 0;
    if (!TimerViewer().Enabled() && !stopped_) TimerViewer().SetEnabled(true);
}

void Playback::Cmd7th_Click() {
    Control& button = viewer_.Cmd7th;
    if (button.Caption == "Ply7 Off") {
        button.Caption = "Ply7 On";
        button.BackColor = frmViewer::kOn;
        s_.Ply7_On = 1;
    } else if (button.Caption == "Ply7 On") {
        button.Caption = "Ply7 Off";
        button.BackColor = frmViewer::kOff;
        s_.Ply7_On = 0;
    } else {
        return;
    }
    if (station_port.Ply7_Box) station_port.Ply7_Box(s_.Ply7_On == 1);
}

void Playback::CmdSc_Click() {
    Control& button = viewer_.CmdSc;
    // The saved value is the mode before the press.
    if (button.BackColor == frmViewer::kGrey) {
        button.BackColor = frmViewer::kOn;
        button.Caption = "M7";
        s_.Ply7_View = false;
    } else if (button.BackColor == frmViewer::kOn) {
        button.BackColor = frmViewer::kGrey;
        button.Caption = "S7";
        s_.Ply7_View = true;
    }
    BP_Ini(s_, services_.paths.install_folder() / "qxbp.ini");
}

}  // namespace tavora
