#include "platform/clock.h"
#include "playback/playback.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "runtime/value.h"

namespace tavora {

namespace {

constexpr const char* kStandby = "Standby, Loading In Process";

// A player that never becomes ready would hold the cueing loop for ever on
// one thread that nothing else can reach: after this many passes it is
// passed over and stays unready.
constexpr int kCuePasses = 6;

}  // namespace

void Playback::Load_Up() {
    if (s_.Load_Limit > 0) return;
    TimerViewer().SetEnabled(false);
    main_.MousePointer = 11;
    if (request.list && request.list->Visible && request.list->Enabled) {
        request.list->Visible = false;
        if (request.label) request.label->Caption = kStandby;
    }
    loding_.Loaded = true;
    if (viewer_.WindowState != 1) {
        loding_.Left = viewer_.Left;
        loding_.Top = viewer_.Top;
    }
    loding_.Label1.Caption = s_.Power_On == 1 && s_.Power_Ctr == 0
                                 ? "Searching Hot List"
                                 : "Count = " + std::to_string(s_.Power_Ctr);
    loding_.Visible = true;
    s_.Load_Limit = s_.Cue_Slot > 8 ? 12 : s_.Cue_Slot;
    if (s_.Live_Mode > 0 && request.flash) request.flash(true);
    if (selection_.Check_Sched) selection_.Check_Sched();

    int retries = 0;
    for (s_.Cue_Slot = 6; s_.Cue_Slot <= s_.Load_Limit; ++s_.Cue_Slot) {
        main_.MousePointer = 11;
        const int slot = s_.Cue_Slot;
        if (s_.Slot_Ready[slot] == 0 && s_.Slot_Ready[kHoldSlot] != 0) {
            take_held(slot);
            // A slot 8 from the holding slot (a chart lead-in's record) cues
            // the CD too: else the set would end with nothing cued for it.
            if (!cue_cd()) return;
        } else if (s_.Slot_Ready[slot] == 0) {
            if (slot == 7 && s_.Ply7_On == 1) {
                s_.Cue_Slot = kSeventhSlot;
                if (!pick() || !Load_Wavs()) return;
                viewer_.Label1(13).Caption = s_.Slot_Title[kSeventhSlot];
                s_.Cue_Slot = 7;
            }
            if (!pick() || !cue_cd()) return;
            if (s_.Slot_Ready[s_.Cue_Slot] == 0 && s_.PL_Marker == 1) {
                --s_.Cue_Slot;
                s_.PL_Marker = 0;
                if (++retries > kMissLimit) {
                    Stop_Run(kNothingPlayable);
                    return;
                }
            } else {
                retries = 0;
            }
        }
        const int shown = s_.Cue_Slot;
        if (shown >= 7 && shown <= 11) {
            loding_.Line(shown - 6).Caption = s_.Slot_Title[shown];
            viewer_.Label1(shown).Caption = loding_.Line(shown - 6).Caption;
        }
        if (shown == 12) viewer_.Label1(12).Caption = s_.Slot_Title[12];
        if (shown >= 7 && shown <= 12) {
            viewer_.ClrCue(shown - 6).Visible = s_.Slot_Ready[shown] == 1 && s_.Ply_Now < 6;
        }
    }

    if (request.label && request.label->Caption == kStandby) {
        if (request.list) request.list->Visible = true;
        request.label->Caption = "The Tavora Music System";
    }
    if (request.form && request.form->Visible && request.refresh) request.refresh();
    s_.Load_Limit = 0;
    main_.MousePointer = 0;
    loding_.Visible = false;
    TimerViewer().SetEnabled(true);
    s_.Load_Due = 0;
}

// The CD's cue goes with slot 8 of the next set. False when selection gave
// up, as for any pick.
bool Playback::cue_cd() {
    if (s_.Slot_Ready[kCdSlot] != 0 || s_.Cue_Slot != 8 || s_.CD_Mode != 1) return true;
    s_.Cue_Slot = kCdSlot;
    if (!pick()) return false;
    viewer_.Label1(0).Caption = "CD " + s_.Slot_Title[kCdSlot];
    s_.Cue_Slot = 8;
    return true;
}

void Playback::Load_It() {
    s_.Load_Busy = 1;
    if (s_.Cue_Slot >= 1 && s_.Cue_Slot < 7) {
        if (Players(s_.Cue_Slot).PlayState() == MediaPlayer::kClosed) return;
        ++s_.Cue_Slot;
    }
    if (s_.Cue_Slot < 6) s_.Ply_Now = s_.Cue_Slot;
    if (s_.Cue_Slot >= 1 && s_.Cue_Slot < 7) {
        if (s_.Slot_Ready[s_.Cue_Slot] != 2 && !Load_Wavs()) return;
        s_.Slot_Ready[s_.Cue_Slot] = 2;
    }
    if (s_.Cue_Slot == 7) {
        Settle_Count = 0;
        s_.Cue_Slot = 8;
        if (s_.Ply7_On == 1) {
            for (int i = 1; i <= 6; ++i) {
                viewer_.Label1(i).Caption = "QX" + std::to_string(i) + " " + s_.Slot_Title[i];
                viewer_.Label1(i + 13).Caption = "Cue Ready";
            }
        }
    }
    if (s_.Cue_Slot == 8) ++Settle_Count;
    if (s_.Cue_Slot == 8 && Settle_Count == 6) {
        Cue_Players();
        s_.Ply_Now = 1;
        for (int i = 1; i <= 6; ++i)
            viewer_.ClrCue(i).Visible = false;
        s_.Load_Busy = 0;
        show_next_caption(s_.Ply_Now + 1);
        main_caption("   Tavora Music System Ver. ", s_.Ply_Now);
        Skip_Quiet = 0;
        viewer_.Visible = true;
        if (s_.CD_Mode != 2 && s_.Live_Mode != 2) {
            Players(1).play();
            P_view();
        }
        if (s_.Ply7_On == 1 && s_.Slot_Started[kSeventhSlot] == 0) {
            TimerViewer().SetEnabled(false);
            main_.MousePointer = 0;
            return;
        }
        TimerViewer().SetEnabled(true);
        Load_Once = 1;
    }
    main_.MousePointer = 0;
}

void Playback::Cue_Players() {
    int passes = 0;
    for (int i = 1; i <= 6; ++i) {
        if (i >= 2 && s_.Slot_Ready[s_.Ply_Now] != 2 && passes < kCuePasses) {
            viewer_.Label1(s_.Ply_Now + 13).Caption = "Loding";
            --i;
            ++passes;
        }
        s_.Cue_Slot = i;
        main_.Panel(3).Text = "Loading P" + std::to_string(i);
        MediaPlayer& player = Players(i);
        if (player.ReadyState() == MediaPlayer::kReady) {
            const double duration = player.Duration();
            if (s_.Slot_End[i] <= 0) s_.Slot_End[i] = duration;
            if (player.SelectionStart() != s_.Slot_Start[i])
                player.SelectionStart(s_.Slot_Start[i]);
            if (player.CurrentPosition() < s_.Slot_Start[i]) {
                main_.Panel(3).Text = "LgFile";
                player.CurrentPosition(s_.Slot_Start[i]);
                main_.Panel(3).Text = Format(s_.Clock_Play, "hh:mm:ss");
            }
            if (s_.Slot_End[i] != duration) {
                if (s_.Slot_End[i] > 0 && s_.Slot_End[i] < duration) {
                    player.SelectionEnd(s_.Slot_End[i]);
                } else {
                    if (duration > 0 && player.SelectionEnd() > 0) player.SelectionEnd(duration);
                    if (s_.Slot_End[i] > 0) s_.Slot_End[i] = duration;
                }
            }
            // Priming at silence, so the first samples are ready at the mix;
            // the ASF modes leave it out.
            if (player.PlayState() != MediaPlayer::kPlaying && s_.Antiskip < 3) {
                player.Volume(-2000);
                player.play();
                player.pause();
            }
            if (s_.Slot_FadeIn[i]) {
                player.Volume(-1500);
            } else {
                if (s_.Slot_Vol[i] < 1) player.Volume(s_.Slot_Vol[i]);
                if (s_.Slot_Vol[i] > 0) player.Volume(0);
            }
            s_.Ply_Now = s_.Cue_Slot;
            s_.Slot_Ready[s_.Ply_Now] = 2;
            s_.Slot_Started[s_.Ply_Now] = 0;
            viewer_.Label1(s_.Ply_Now).Caption =
                "QX" + std::to_string(s_.Ply_Now) + " " + s_.Slot_Title[s_.Ply_Now];
            viewer_.Label1(s_.Ply_Now + 13).Caption = "Cue Ready";
        }
        if (s_.Antiskip > 0 && s_.Antiskip < 3) services_.clock.BKWait(s_.Antiskip * 1000);
    }
    main_.Panel(3).Text = Format(s_.Clock_Play, "hh:mm:ss");
}

void Playback::Duration_Fix() {
    Recordset& rows = library_rows();
    const int slot = s_.Ply_Now == 7 ? kSeventhSlot : s_.Ply_Now;
    if (slot < 1 || slot >= kSlots) return;
    // The table's rows are keyed by RecID: the row is found without reading
    // every row before it.
    if (!rows.SetBookmark(Value(static_cast<double>(s_.Slot_RecID[slot])))) {
        rows.MoveLast();
        rows.MoveNext();
    }
    // Player 14 doesn't exist: the seventh song's length is never written.
    if (!rows.IsEOF() && slot != kSeventhSlot) {
        MediaPlayer& player = Players(slot);
        const double start = player.SelectionStart();
        const double end = player.SelectionEnd();
        const bool selected = end != -1 && end > 0 && end > start;
        const double to = selected ? end : player.Duration();
        rows.Edit();
        rows.SetField("Length", Value::date(DateAdd("s", to, 0) - DateAdd("s", start, 0)));
        rows.Update();
    }
    if (s_.Ply_Now < 1 || s_.Ply_Now > kPlayers) return;
    MediaPlayer& player = Players(s_.Ply_Now);
    if (player.Duration() - player.SelectionEnd() < 1 && player.Duration() > 0) {
        player.SelectionEnd(player.Duration());
    }
}

}  // namespace tavora
