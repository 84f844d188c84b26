#include <string_view>

#include "core/settings/session_file.h"
#include "core/version.h"
#include "platform/path_map.h"
#include "playback/playback.h"
#include "runtime/convert.h"

namespace tavora {

namespace {

// "major.minor" of the build's version.
std::string short_version() {
    const std::string_view full = kVersion;
    const auto first = full.find('.');
    const auto second = first == std::string_view::npos ? first : full.find('.', first + 1);
    return std::string(full.substr(0, second));
}

constexpr long kRed = 255;

}  // namespace

void Playback::show_next_caption(int slot) {
    viewer_.Caption = "Next: " + s_.Slot_Title[slot];
}

void Playback::main_caption(const std::string& words, int slot) {
    main_.Caption = short_version() + words + s_.Slot_Title[slot];
}

void Playback::P_view() {
    const int active = std::clamp(s_.Ply_Now, 1, kPlayers);
    show_next_caption(active + 1);
    main_caption("   Tavora Music System Ver ", active);
    viewer_.Label1(active).Caption = s_.Slot_Title[active];
    if (viewer_.video_off()) return;

    MediaPlayer& player = Players(active);
    Appearance& look = player.appearance();
    look.Visible = true;
    look.ShowControls = look.ShowPositionControls = look.ShowTracker = false;
    look.EnablePositionControls = look.EnableTracker = look.ShowGotoBar = false;
    look.ShowAudioControls = look.ShowStatusBar = look.ShowDisplay = false;
    MpFm& window = Player_Forms(active);
    window.Visible = true;
    place_video_window(window, player);
    look.Visible = true;
    window.Visible = true;
}

void Playback::place_video_window(MpFm& window, MediaPlayer& player) {
    Appearance& look = player.appearance();
    const Form* screen = request.form;
    const int slot = window.number;
    for (Video_Size = 2; Video_Size != 8;) {
        window.Caption = s_.Slot_Title[slot == 7 ? kSeventhSlot : slot];
        look.DisplaySize = Video_Size;
        look.Visible = true;
        window.WindowState = 0;
        window.Height = look.Height + 400;
        window.Width = look.Width;
        if (!screen || screen->WindowState != 2) {
            window.Left = 0;
            window.Top = 0;
            break;
        }
        const bool right = slot == 2 || slot == 4 || slot == 6;
        window.Left = right ? screen->Left + screen->Width - window.Width : screen->Left + 15;
        const bool low = slot == 3 || slot == 4 || slot == 7;
        window.Top = low ? screen->Top + screen->Height - 400 : 1400;
        if (window.Left < 5) window.Left = 5;
        if (window.Top < 1400) window.Top = 1400;
        if (window.Height <= screen->Height - 1400 &&
            window.Width <= screen->Width + viewer_.Width) {
            break;
        }
        // The next smaller picture: 2, 0, 1, 6, then give up.
        Video_Size = Video_Size == 2 ? 0 : Video_Size == 0 ? 1 : Video_Size == 1 ? 6 : 8;
        if (request.picture) request.picture->Caption = "Click Mouse To VIEW Jukebox";
    }
}

void Playback::VidButt_Click() {
    Control& button = viewer_.VidButt;
    const int active = std::clamp(s_.Ply_Now, 1, kPlayers);
    bool seventh_alone = is_playing(7);
    for (int n = 1; n <= 6; ++n)
        if (is_playing(n)) seventh_alone = false;
    if (button.Caption == "Video Off") {
        button.Caption = "Video On";
        button.BackColor = frmViewer::kOn;
        s_.Vid_On = true;
        P_view();
        Player_Forms(active).Visible = true;
        if (seventh_alone) {
            Player_Forms(7).Visible = true;
            for (int n = 1; n <= 6; ++n)
                Player_Forms(n).Visible = false;
        }
    } else {
        button.Caption = "Video Off";
        button.BackColor = frmViewer::kOff;
        s_.Vid_On = false;
        Player_Forms(active).Visible = false;
        if (is_playing(7)) Player_Forms(7).Visible = false;
        if (request.picture) request.picture->Visible = false;
    }
    BP_Ini(s_, services_.paths.install_folder() / "qxbp.ini");
}

void Playback::slow_refresh() {
    Control& button = viewer_.Cmd7th;
    if (s_.Ply7_On == 1) {
        button.Caption = "Ply7 On";
        button.BackColor = frmViewer::kOn;
    } else {
        button.Caption = "Ply7 Off";
        button.BackColor = frmViewer::kOff;
        s_.Ply7_On = 0;
    }
    button.Visible = s_.CD_Mode <= 0;
    if (s_.Ply7_On == 1 || s_.CD_Mode > 0) on_air.Visible = false;
    if (s_.CD_Mode == 2) viewer_.Command7.Visible = false;
}

void Playback::on_air_popup() {
    const int a = s_.Ply_Now;
    const double position = Players(a).CurrentPosition();
    int phase = 0;
    Talk_Gap = s_.Slot_End[a] - s_.Slot_MixOut[a] - position;
    if (Talk_Gap < 20 && Talk_Gap > 0) {
        phase = 1;
    } else {
        if (Talk_Gap < 1) phase = 2;
        if (s_.Slot_MixIn[a] - position > 0) phase = 3;
    }
    OnAir_Phase = 1;
    if (phase == 0) {
        on_air.Loaded = false;
        on_air.Visible = false;
        return;
    }
    if (!on_air.Loaded) {
        FrmOnAir_Load();
        const bool under = request.form && request.form->Visible;
        on_air.Top = under ? request.form->Top + request.form->Height : 0;
        on_air.Visible = true;
    }
    // The next titles, the seventh song in its place after slot 6.
    int slot = a;
    for (int row = 0; row <= 3; ++row, ++slot) {
        std::string title;
        if (s_.Ply7_On == 1 && slot == 7) {
            title = s_.Slot_Title[kSeventhSlot];
        } else {
            const int shown = s_.Ply7_On == 1 && slot > 7 ? slot - 1 : slot;
            if (shown <= 12) title = s_.Slot_Title[shown];
        }
        on_air.LblComing(row).Caption = title;
    }
    const bool soon = phase == 1;
    on_air.Label1.Caption = soon ? "SOON" : "N O W";
    on_air.LblIn.Visible = on_air.LblInValue.Visible = on_air.LblInSec.Visible = soon;
    on_air.LblLeft.Visible = on_air.LblLeftValue.Visible = on_air.LblLeftSec.Visible = !soon;
    const int next = a + 1;
    if (soon) {
        Talk_Time = s_.Slot_MixOut[a] + s_.Slot_MixIn[next] - s_.Slot_Start[next];
        on_air.LblTalkValue.Caption = std::to_string(CInt(Talk_Time));
        on_air.LblInValue.Caption = std::to_string(CInt(Talk_Gap));
        return;
    }
    const double left =
        phase == 2 ? Talk_Gap + s_.Slot_MixOut[a] + s_.Slot_MixIn[next] - s_.Slot_Start[next]
                   : s_.Slot_MixIn[a] - position;
    const std::string text = std::to_string(CInt(left));
    if (text != on_air.LblLeftValue.Caption) {
        // One colour step a change: the label blinks as the count runs down.
        long& colour = on_air.Label1.ForeColor;
        colour = colour == kRed ? 0xFF0000 : colour == 0xFF0000 ? 0xFFFF00 : kRed;
        on_air.LblLeftValue.Caption = text;
    }
}

void Playback::FrmOnAir_Load() {
    on_air.Loaded = true;
    const bool pending = Pause_At != 0;
    on_air.CmdPause.Visible = !pending;
    on_air.CmdResume.Visible = pending;
    on_air.LblPause.Caption =
        pending ? "Plyr" + std::to_string(Pause_At) + " will pause, Press" : "";
}

void Playback::CmdPause_Click() {
    Pause_At = s_.Ply_Now + 1 == 7 ? 1 : s_.Ply_Now + 1;
    on_air.LblPause.Caption = "Plyr" + std::to_string(Pause_At) + " will pause, Press";
    on_air.CmdPause.Visible = false;
    on_air.CmdResume.Visible = true;
}

void Playback::CmdResume_Click() {
    Pause_At = 0;
    TimerViewer().SetEnabled(true);
    Players(std::clamp(s_.Ply_Now, 1, kPlayers)).play();
    on_air.LblPause.Caption.clear();
    on_air.CmdResume.Visible = false;
}

}  // namespace tavora
