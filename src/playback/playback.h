#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>

#include "core/services.h"
#include "core/station.h"
#include "core/windows/frm_loding.h"
#include "core/windows/qx_main.h"
#include "platform/event_loop.h"
#include "playback/frm_viewer.h"
#include "playback/media_player.h"
#include "playback/ports.h"
#include "store/data_control.h"

namespace tavora {

// The windows the bank draws on that belong to other layers.
struct PlaybackScreens {
    QXMain& main;
    frmLoding& loding;
    frmViewer& viewer;
};

// The playback subsystem: the bank of seven players and their windows, cue
// loading, the transport tick and its fader, skip, break and pause, the
// seventh player, set rotation and the Run command. Procedures keep the
// names of the windows' routines; the station's front ends click the
// controls, which land here. Everything runs on the rule thread.
class Playback {
  public:
    Playback(Station& station, const Services& services, PlaybackScreens screens,
             DataControl& library, const PlayerFactory& players, SelectionPort selection);
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    RequestPort request;
    StationPort station_port;
    PlaybackObserver* observer = nullptr;
    // Loudness normalisation: decibels on top of the rules' levels for the
    // file a player opens (a native path or a URL); empty or 0 plays the
    // rules' levels.
    std::function<double(const std::string& file)> level_trim;
    // Called first in every tick: the dead-air watchdog, whose skip is then
    // handed over by the same tick.
    std::function<void()> on_tick;

    // Players(1 To 7) and Player_Forms(1 To 7).
    MediaPlayer& Players(int n) { return *players_[n]; }
    MpFm& Player_Forms(int n) { return *forms_[n]; }
    FrmOnAir on_air;

    Timer& TimerViewer() { return *timer_viewer_; }
    frmViewer& viewer() { return viewer_; }
    Timer& APlayer7() { return *aplayer7_; }

    // The bank: opening a slot's file, the players' events, a close box.
    bool Load_Wavs();
    void PlayStateChange(int n);
    void PlayerError(int n);
    void Player_QueryUnload(int n);

    // Cue loading.
    void Load_Up();
    void Load_It();
    void Cue_Players();
    void Duration_Fix();

    // The transport tick and its fader.
    void TimerViewer_Timer();
    void Amovie_fader();

    // Operator interventions.
    void Skip_One();
    void Break_Click();  // `Command7` of the request screen
    void Ply_Pse();
    void ClrCue_Click(int index);
    // Closing the viewer; false when the operator kept it.
    bool viewer_QueryUnload();

    // The seventh player and the viewer's toggles.
    void APlayer7_Timer();
    void KickOut();
    void Cmd7th_Click();
    void CmdSc_Click();
    void VidButt_Click();

    // The now-playing display.
    void P_view();
    void FrmOnAir_Load();
    void CmdPause_Click();
    void CmdResume_Click();

    // The Run command, `mnu_File_Run_Click`.
    void Run();

    // The transport's working state, kept from tick to tick.
    int Load_Late = 0;  // the active song is too short for a Load_Up while it plays
    int Load_Once = 0;  // a set has started since the run began
    int Ply7_Secs = 0;  // seconds the seventh song has played
    int Ply_Scan = 0;
    int Settle_Count = 0;
    int Ply_Closing = 0;
    int Pause_At = 0;  // the slot a pause waits for
    int Stop_Hold = 0;
    int Skip_Quiet = 0;
    int APlayer7_Busy = 0;
    int Live_Ticks = 0, Ui_Tick = 0;
    int Ply_View = 0;
    int Video_Size = 2;
    int OnAir_Phase = 0;  // 0 pop-up off, 1 idle or "SOON", 2 mix passed, 3 before the mix-in
    double Talk_Gap = 0, Talk_Time = 0;
    std::string Debug_Step;

    // Set once the run has stopped because nothing playable could be found.
    bool run_stopped() const { return stopped_; }

    // A selection that gives a missing file, or nothing, this many times in
    // a row for one slot means the library has nothing to play: the run stops
    // with this message instead of spinning.
    static constexpr int kMissLimit = 50;
    static constexpr const char* kNothingPlayable =
        "PLAYERS STOPPED: no playable file could be found in the library";

  private:
    // Steps of the routines above.
    // auto_run, told to the observer; false when selection starved and the
    // run was stopped.
    bool pick();
    // Moves the record waiting in the holding slot 13 into `slot`; the
    // slot's own spot flag stays.
    void take_held(int slot);
    bool cue_cd();
    // The records of `Data1`, refreshed; `Recordings1` unless the editor
    // has put it on another source.
    Recordset& library_rows();
    void hand_over_scan();
    void rotation_test();
    void stall_recovery();
    void pause_branch();
    void start_seventh();
    void cd_take_air();
    void rotate_set();
    void repair_mix(int slot);
    void fade(int i);
    void status_line(int i);
    void break_clock();
    void slow_refresh();
    void on_air_popup();
    void show_next_caption(int slot);
    void main_caption(const std::string& words, int slot);
    void place_video_window(MpFm& window, MediaPlayer& player);
    void Stop_Run(const std::string& message);
    bool is_playing(int n) { return Players(n).PlayState() == MediaPlayer::kPlaying; }
    MediaPlayer& player_of_slot(int slot) { return Players(slot == kSeventhSlot ? 7 : slot); }

    Station& s_;
    const Services& services_;
    QXMain& main_;
    frmLoding& loding_;
    frmViewer& viewer_;
    DataControl& library_;
    SelectionPort selection_;

    std::array<std::unique_ptr<MediaPlayer>, kPlayers + 1> players_;
    std::array<std::unique_ptr<MpFm>, kPlayers + 1> forms_;
    std::unique_ptr<Timer> timer_viewer_;
    std::unique_ptr<Timer> aplayer7_;
    std::array<double, kPlayers + 1> Fade_Step{}, Fade_Next{};
    bool stopped_ = false;
};

}  // namespace tavora
