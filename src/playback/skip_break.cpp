#include <algorithm>

#include "core/settings/session_file.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/path_map.h"
#include "playback/playback.h"
#include "runtime/dates.h"
#include "runtime/strings.h"

namespace tavora {

namespace {
constexpr double kSecond = 1.0 / 86'400.0;
}  // namespace

void Playback::Skip_One() {
    Control* break_button = request.break_button;
    if (break_button && break_button->Caption == "Resume" && s_.Live_Mode < 2) {
        services_.dialogs.MsgBox("You Can't Skip During An Active (Break) Routine");
        return;
    }
    if (!viewer_.Visible) return;
    bool proceed = Ply_Closing == 1 || s_.Live_Mode == 2;
    if (s_.Live_Mode != 2 && Ply_Closing == 0) {
        proceed =
            services_.dialogs.MsgBox("Are You Sure you want to SKIP this song?", Buttons::YesNo,
                                     "Skipping Another Song Huh?", Icon::Question) == Answer::Yes;
    }
    if (!proceed) return;
    const int remembered = is_playing(7) ? s_.Ply_Now : 0;
    if (remembered) s_.Ply_Now = 7;
    if (s_.Ply_Now < 1 || s_.Ply_Now > kPlayers) return;
    MediaPlayer& player = Players(s_.Ply_Now);
    if (player.PlayState() == MediaPlayer::kPlaying) {
        if (player.SelectionEnd() < 1) player.SelectionEnd(player.Duration());
        const double position = player.CurrentPosition();
        // The mix-out becomes the whole time played, so the hand-over fires
        // at once for a song ten seconds in; the song fades under the next.
        if (player.SelectionEnd() - position > 10) {
            player.SelectionEnd(position + 10);
            s_.Slot_End[s_.Ply_Now] = player.SelectionEnd();
            s_.Slot_MixOut[s_.Ply_Now] = position;
            s_.Slot_FadeOut[s_.Ply_Now] = true;
        }
        Control& line = viewer_.Label1(s_.Ply_Now + 13);
        line.Caption = "Skipped" + Mid(line.Caption, 8, 70);
    }
    if (s_.Ply_Now == 7) {
        player.Stop();
        s_.Slot_Started[kSeventhSlot] = 1;
        s_.Slot_Ready[kSeventhSlot] = 0;
    }
    if (remembered) s_.Ply_Now = remembered;
}

void Playback::Break_Click() {
    Control* button = request.break_button;
    if (!button) return;
    if (!viewer_.Visible) {
        services_.dialogs.MsgBox("Sorry, Not Yet");
        return;
    }
    // The slot that will hold must be one the hand-over reaches in this set.
    if ((s_.Ply_Now > 5 || is_playing(7) || s_.CD_Mode == 2) && s_.Live_Mode < 2) {
        services_.dialogs.MsgBox("Sorry, Not Yet");
        return;
    }
    if (button->Caption != "Break") {
        button->Caption = "Break";
        MediaPlayer& active = Players(std::clamp(s_.Ply_Now, 1, kPlayers));
        if (active.PlayState() != MediaPlayer::kStopped) {
            active.play();
        } else if (s_.Ply_Now < 6) {
            Players(s_.Ply_Now + 1).play();
        }
        Pause_At = 0;
        s_.SM_State = 0;
        // A station manager's break ended early by hand lets requests go too.
        if (s_.Live_Mode == 2) s_.Req_Hold = 0;
        s_.Live_Mode = 0;
        const double now = services_.clock.Now();
        s_.Break_Date = DateValueOf(now);
        s_.Break_End = TimeValueOf(now);
        button->BackColor = 0x40C0;
        TimerViewer().SetEnabled(true);
        return;
    }
    button->Caption = "Resume";
    Pause_At = s_.Ply_Now + 1 == 7 ? 1 : s_.Ply_Now + 1;
    button->BackColor = 0xFFFF;
}

void Playback::break_clock() {
    const double now = services_.clock.Now();
    const double time = TimeValueOf(now);
    if (s_.Live_Mode == 1 && time > s_.Break_Start && s_.SM_State > 0) {
        s_.Live_Mode = 2;
        s_.Req_Hold = 1;  // no request plays while the presenter is live
        if (s_.Brk_Skip) Skip_One();
        if (request.break_button && request.break_button->Caption == "Break") Break_Click();
        const bool cd_shown = station_port.cd_shown && station_port.cd_shown();
        if (s_.Brk_CD && !cd_shown && station_port.CDButt_Click) station_port.CDButt_Click();
        if (!s_.Brk_CD && cd_shown && station_port.unload_cd) station_port.unload_cd();
        s_.BP_On = s_.Brk_BP;
        s_.BP_Block = s_.Brk_BPSongs;
        BP_Ini(s_, services_.paths.install_folder() / "qxbp.ini");
        Live_Ticks = 0;
    }
    if (s_.Live_Mode == 2 && time > s_.Break_End + kSecond && s_.SM_State > 0 &&
        DateValueOf(now) >= s_.Break_Date) {
        s_.Live_Mode = 3;
        s_.Req_Hold = 0;
        if (request.flash) request.flash(false);
        if (request.break_button && request.break_button->Caption == "Resume") Break_Click();
    }
}

void Playback::Ply_Pse() {
    if (!viewer_.Visible) return;
    MediaPlayer& player = Players(std::clamp(s_.Ply_Now, 1, kPlayers));
    if (player.PlayState() != MediaPlayer::kPlaying) {
        TimerViewer().SetEnabled(true);
        player.play();
        return;
    }
    // With the timer off the whole bank holds: no fade, no hand-over.
    if (services_.dialogs.MsgBox(
            "This Will PAUSE the Wave Players! Are You Sure you want to do this?",
            Buttons::OKCancel, "I Hate It When The Music Stops WARNING", Icon::Exclamation,
            2) == Answer::OK) {
        TimerViewer().SetEnabled(false);
        player.pause();
    }
}

void Playback::ClrCue_Click(int index) {
    if (index < 1 || index > 6) return;
    const int slot = index + 6;
    TimerViewer().SetEnabled(false);
    if (services_.dialogs.MsgBox("Are you sure you want to remove " + s_.Slot_Title[slot] + "?",
                                 Buttons::YesNo, "Remove Cued Selection",
                                 Icon::Critical) == Answer::Yes) {
        s_.clear_slot(slot);
        viewer_.Label1(slot).Caption.clear();
        viewer_.ClrCue(index).Visible = false;
    }
    TimerViewer().SetEnabled(true);
}

bool Playback::viewer_QueryUnload() {
    if (!viewer_.Visible) return true;
    if (services_.dialogs.MsgBox(
            "This Will unload and STOP the Wave Players! Are You Sure you want to do this?",
            Buttons::OKCancel, "UNLOAD WARNING", Icon::Exclamation, 2) != Answer::OK) {
        return false;
    }
    Ply_View = 0;
    // The run is over: the seventh player's stop must not start the tick again.
    stopped_ = true;
    TimerViewer().SetEnabled(false);
    for (int n = 1; n <= kPlayers; ++n)
        Players(n).Stop();
    viewer_.Visible = false;
    return true;
}

}  // namespace tavora
