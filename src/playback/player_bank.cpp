#include <stdexcept>

#include "core/log/play_log.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/path_map.h"
#include "playback/playback.h"
#include "runtime/strings.h"

namespace tavora {

Playback::Playback(Station& station, const Services& services, PlaybackScreens screens,
                   DataControl& library, const PlayerFactory& players, SelectionPort selection)
    : s_(station),
      services_(services),
      main_(screens.main),
      loding_(screens.loding),
      viewer_(screens.viewer),
      library_(library),
      selection_(std::move(selection)) {
    for (int n = 1; n <= kPlayers; ++n) {
        players_[n] = players(n);
        if (!players_[n]) throw std::invalid_argument("a player factory made no player");
        forms_[n] = std::make_unique<MpFm>(n);
        players_[n]->PlayStateChange = [this, n](int, int new_state) {
            if (observer) observer->state_changed(n, n == 7 ? kSeventhSlot : n, new_state);
            if (new_state == MediaPlayer::kPlaying && station_port.on_air)
                station_port.on_air(n == 7 ? kSeventhSlot : n);
            PlayStateChange(n);
        };
        players_[n]->Error = [this, n] { PlayerError(n); };
        forms_[n]->QueryUnload = [this, n] {
            Player_QueryUnload(n);
            return true;
        };
    }
    viewer_.QueryUnload = [this] { return viewer_QueryUnload(); };
    timer_viewer_ = services_.loop.CreateTimer([this] { TimerViewer_Timer(); });
    timer_viewer_->SetInterval(300);
    aplayer7_ = services_.loop.CreateTimer([this] { APlayer7_Timer(); });
    aplayer7_->SetInterval(1000);

    viewer_.on_click("ClrCue", [this](int index) { ClrCue_Click(index); });
    viewer_.on_click("Cmd7th", [this](int) { Cmd7th_Click(); });
    viewer_.on_click("CmdSc", [this](int) { CmdSc_Click(); });
    viewer_.on_click("VidButt", [this](int) { VidButt_Click(); });
    viewer_.on_click("Command7", [this](int) { Skip_One(); });
    on_air.on_click("CmdPause", [this](int) { CmdPause_Click(); });
    on_air.on_click("CmdResume", [this](int) { CmdResume_Click(); });
}

Playback::~Playback() = default;

bool Playback::pick() {
    if (selection_.auto_run) selection_.auto_run();
    // Nothing in the library may be taken: asking again would find nothing
    // again, and the slot may still hold a file of an earlier run.
    if (s_.Sel_Starved != 0) {
        Stop_Run(kNothingPlayable);
        return false;
    }
    if (observer && s_.Slot_Ready[s_.Cue_Slot] != 0) observer->committed(s_.Cue_Slot);
    return true;
}

Recordset& Playback::library_rows() {
    if (library_.RecordSource.empty()) library_.RecordSource = "Recordings1";
    library_.Refresh();
    return library_.Recordset();
}

void Playback::take_held(int slot) {
    const int special = s_.Slot_Special[slot];
    s_.copy_slot(kHoldSlot, slot);
    s_.Slot_Special[slot] = special;
    s_.Slot_Started[slot] = 0;
    s_.Slot_Ready[slot] = 1;
    s_.Slot_Ready[kHoldSlot] = 0;
}

bool Playback::Load_Wavs() {
    // Only the bank's slots and the seventh player's have a player.
    if (s_.Cue_Slot < 1 || (s_.Cue_Slot > 6 && s_.Cue_Slot != kSeventhSlot)) return false;
    int misses = 0;
    std::string file;  // what the player opens: a native path or a URL
    for (;;) {
        const std::string& path = s_.Slot_File[s_.Cue_Slot];
        if (Left(path, 4) == "http") {
            file = path;
            break;
        }
        const PathMap::Result native = services_.paths.ToNative(path);
        if (!path.empty() && native.ok() && files::Exists(native.path)) {
            file = native.path;
            break;
        }
        if (s_.Log_Due == 0) {
            s_.Log_Line = missing_line(services_.clock.Now(), path, s_.Slot_Title[s_.Cue_Slot]);
            Log_One(s_, services_);
            main_.Count(7);
        }
        if (++misses > kMissLimit) {
            Stop_Run(kNothingPlayable);
            return false;
        }
        if (!pick()) return false;
    }
    MediaPlayer& player = player_of_slot(s_.Cue_Slot);
    player.Open(file);
    player.Trim(level_trim ? level_trim(file) : 0.0);
    return true;
}

void Playback::Stop_Run(const std::string& message) {
    if (stopped_) return;
    stopped_ = true;
    TimerViewer().SetEnabled(false);
    APlayer7().SetEnabled(false);
    s_.Load_Busy = 0;
    s_.Load_Limit = 0;
    for (int n = 1; n <= kPlayers; ++n)
        Players(n).Stop();
    main_.Panel(3).Text = message;
    main_.MousePointer = 0;
    loding_.Visible = false;
    // The line says why the station fell silent; with the log off, the
    // status bar alone says it.
    if (s_.Log_Due != 2) {
        if (s_.Log_Due == 1) Log_One(s_, services_);
        s_.Log_Line = message;
        Log_One(s_, services_);
    }
    if (observer) observer->run_stopped(message);
}

void Playback::PlayStateChange(int n) {
    if (s_.Load_Busy > 0) return;
    MediaPlayer& player = Players(n);
    const int slot = n == 7 ? kSeventhSlot : n;
    if (n == 7) Debug_Step = "State Chg Ply7";
    if (player.PlayState() == MediaPlayer::kPlaying && s_.Slot_Ready[slot] != 3) {
        s_.Slot_Ready[slot] = 3;
        if (!viewer_.video_off()) Player_Forms(n).Visible = true;
        main_.MousePointer = 11;
        Duration_Fix();
        main_.MousePointer = 0;
    }
    if (player.PlayState() != MediaPlayer::kStopped) return;
    if (n == 7) {
        KickOut();
    } else if (n == 1 || Stop_Hold == 0) {
        Player_Forms(n).Visible = false;
        s_.Slot_Started[n] = 1;
    }
}

void Playback::PlayerError(int n) {
    if (n == 7 && s_.Ply7_On != 1) return;
    services_.dialogs.MsgBox(Players(n).ErrorDescription() + " Player " + std::to_string(n));
}

void Playback::Player_QueryUnload(int) {
    Ply_Closing = 1;
    Skip_One();
    Ply_Closing = 0;
}

}  // namespace tavora
