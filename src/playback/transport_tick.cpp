#include "core/log/play_log.h"
#include "platform/clock.h"
#include "playback/playback.h"

namespace tavora {

void Playback::TimerViewer_Timer() {
    if (on_tick) on_tick();
    if (s_.Load_Busy == 1) Load_It();
    if (stopped_) return;
    break_clock();
    ++Live_Ticks;
    if (Live_Ticks == 10 && s_.Live_Mode == 2 && (s_.Brk_Exit1 || s_.Brk_Exit2)) {
        if (station_port.save_internet) station_port.save_internet();
        if (station_port.end_program) station_port.end_program();
        return;
    }
    if (Live_Ticks >= 150) {
        Live_Ticks = 0;
        if (station_port.SM_Check) station_port.SM_Check();
    }
    if (Pause_At > 0 && s_.Ply_Now == Pause_At) {
        pause_branch();
        return;
    }
    if (++Ui_Tick > 10) {
        Ui_Tick = 0;
        slow_refresh();
    }
    if (s_.Load_Busy > 0) return;

    // The main block: the timer stays off while it runs, so a long
    // Load_Up never piles ticks up behind it.
    TimerViewer().SetEnabled(false);
    if (s_.Log_Due == 1) Log_One(s_, services_);
    if (s_.Ply_Now > 6) s_.Ply_Now = 6;
    if (s_.Ply_Now < 1) s_.Ply_Now = 1;

    // Selection runs only when the song has room for it, away from a mix.
    const int active = s_.Ply_Now;
    if (!(s_.Slot_End[active] - s_.Slot_MixOut[active] - s_.Slot_MixIn[active] > 55)) {
        Load_Late = 1;
    } else {
        Load_Late = 0;
        const double position = Players(active).CurrentPosition();
        if (s_.Load_Due == 1 && position > s_.Slot_MixIn[active] + 2 && position > 15) Load_Up();
        if (stopped_) return;
    }
    if (s_.Live_Pop == 1 && s_.CD_Mode != 2 && OnAir_Phase == 1) on_air_popup();
    Amovie_fader();
    hand_over_scan();
    rotation_test();
    if (!stopped_) TimerViewer().SetEnabled(true);
}

void Playback::hand_over_scan() {
    for (Ply_Scan = 1; Ply_Scan <= 6; ++Ply_Scan) {
        const int i = Ply_Scan;
        MediaPlayer& player = Players(i);
        const double end_now =
            player.SelectionEnd() > 0 ? player.SelectionEnd() : player.Duration();
        if (s_.Slot_Ready[i] != 3 || i != s_.Ply_Now) continue;
        if (!(end_now - player.CurrentPosition() <= s_.Slot_MixOut[i])) continue;
        if (s_.Ply_Now == 6) {
            // The set's end: no slot 7 on the bank, only the seventh player.
            start_seventh();
            continue;
        }
        if (s_.Live_Mode == 2 && !s_.Brk_Play) continue;
        ++s_.Ply_Now;
        Stop_Hold = 1;
        Stop_Hold = 0;
        MediaPlayer& next = Players(s_.Ply_Now);
        next.Mute(false);
        if (next.CurrentPosition() < s_.Slot_Start[s_.Ply_Now]) {
            next.CurrentPosition(s_.Slot_Start[s_.Ply_Now]);
        }
        next.play();
        // A break holds the set here: the slot must not be heard before the
        // next tick pauses it.
        if (s_.Ply_Now == Pause_At) next.Mute(true);
        P_view();
        if (s_.Ply7_On == 1 && s_.Ply_Now == 6) show_next_caption(kSeventhSlot);
        s_.Cue_Slot = s_.Ply_Now + 6;
        s_.Load_Due = 1;
    }
}

void Playback::rotation_test() {
    Ply_Scan = 1;
    if (s_.Slot_Started[6] == 1 && s_.Live_Mode != 2) Ply_Scan = 2;
    if (Ply_Scan > 1 && s_.Live_Mode != 2) {
        rotate_set();
        return;
    }
    if (s_.CD_Mode != 2 && s_.Live_Mode != 2) stall_recovery();
}

void Playback::stall_recovery() {
    s_.Load_Limit = 1;  // here: nothing plays
    for (int i = 1; i <= 6; ++i)
        if (s_.Slot_Started[i] == 0 && is_playing(i)) s_.Load_Limit = 0;
    if (s_.Load_Limit == 1 && !is_playing(7)) {
        for (s_.Ply_Now = 1; s_.Ply_Now <= 6; ++s_.Ply_Now) {
            MediaPlayer& player = Players(s_.Ply_Now);
            // In the ASF modes a paused player is one being primed.
            if (player.PlayState() == MediaPlayer::kPaused && s_.Load_Limit == 1 &&
                (s_.Antiskip == 3 || s_.Antiskip == 4)) {
                s_.Load_Limit = 0;
            }
            if (s_.Slot_Started[s_.Ply_Now] != 1 && s_.Load_Limit == 1) {
                s_.Load_Limit = 0;
                player.play();
                P_view();
                if (s_.Ply7_On == 1 && s_.Ply_Now == 6) show_next_caption(kSeventhSlot);
                s_.Cue_Slot = s_.Ply_Now + 6;
                s_.Load_Due = 1;
            }
        }
        // The loop left Ply_Now past 6: the restarted player is the active
        // one; with none restarted it stays past 6 until the next tick.
        if (s_.Load_Limit == 0) s_.Ply_Now = s_.Cue_Slot - 6;
    }
    s_.Load_Limit = 0;
}

void Playback::pause_branch() {
    MediaPlayer& player = Players(s_.Ply_Now);
    player.pause();
    player.Mute(false);
    if (player.CurrentPosition() != s_.Slot_Start[s_.Ply_Now]) {
        player.CurrentPosition(s_.Slot_Start[s_.Ply_Now]);
    }
    TimerViewer().SetEnabled(false);
}

}  // namespace tavora
