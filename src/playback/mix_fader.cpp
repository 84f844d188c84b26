#include "core/log/play_log.h"
#include "platform/clock.h"
#include "playback/playback.h"
#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

std::string clock_text(double seconds) {
    return Format(DateAdd("s", seconds, 0), "h:mm:ss");
}

// The arrow that walks with the seconds: in front of and behind the line.
std::pair<const char*, const char*> marker(char digit) {
    switch (digit) {
        case '1':
        case '4':
        case '7':
            return {">   ", " >  "};
        case '2':
        case '5':
        case '8':
            return {" >  ", "  > "};
        case '3':
        case '6':
        case '9':
            return {"  > ", "   >"};
        default:
            return {"  - ", "   -"};
    }
}

}  // namespace

void Playback::Amovie_fader() {
    for (Ply_Scan = 1; Ply_Scan <= kPlayers; ++Ply_Scan) {
        const int i = Ply_Scan;
        MediaPlayer& player = Players(i);
        if (player.PlayState() != MediaPlayer::kPlaying && s_.Slot_Started[i] == 1) {
            Control& line = viewer_.Label1(i + 13);
            if (Left(line.Caption, 2) == "QX") {
                const double now = services_.clock.Now();
                line.Caption = "Complete At: " + Format(now, "long time");
                if (s_.Log_Due == 0) {
                    s_.Log_Line = complete_line(now, i, s_.Slot_Title[i == 7 ? kSeventhSlot : i]);
                    s_.Log_Due = 1;
                }
            }
        }
        int show = s_.Slot_Ready[i] == 3 && s_.Slot_Started[i] == 0 ? 1 : 0;
        if (s_.Ply7_On == 1) {
            if (s_.Slot_Ready[kSeventhSlot] == 3 && s_.Slot_Started[kSeventhSlot] == 0) {
                show = 2;
            } else if (i == 7 && s_.Slot_Ready[kSeventhSlot] != 1) {
                viewer_.Label1(20).Caption = "Player 7 Enabled";
            } else if (i == 7) {
                viewer_.Label1(20).Caption = "Cued";
                viewer_.ProgressBar1[7].Value = 0;
            }
        } else if (i == 7) {
            viewer_.Label1(20).Caption = "The Tavora Music System";
        }
        if (show == 0) continue;
        status_line(i);
        if (i < 7) fade(i);  // the seventh player is never faded
    }
}

void Playback::status_line(int i) {
    MediaPlayer& player = Players(i);
    const double position = Int(player.CurrentPosition());
    const double end = player.SelectionEnd() < 0 ? player.Duration() : player.SelectionEnd();
    viewer_.ProgressBar1[i] = {end, position};
    const double remaining = end - position;
    const std::string at = clock_text(position);
    std::string word = "Cued";
    if (player.PlayState() == MediaPlayer::kPlaying) word = "Playing";
    if (player.PlayState() == MediaPlayer::kPaused) word = "Paused";
    if (remaining < 2) word = "Stopped";
    const std::string text =
        word + "   (T)" + at + "   (E)" + clock_text(end) + "   (R)" + clock_text(remaining);
    const auto [front, behind] = marker(at.empty() ? '0' : at.back());
    viewer_.Label1(i + 13).Caption = "QX" + std::to_string(i) + front + text + behind;
}

void Playback::fade(int i) {
    MediaPlayer& player = Players(i);
    if (is_playing(7)) viewer_.Label1(i + 13).Caption = " Cue In Progress";
    const double position = player.CurrentPosition();
    // Both fades read the active slot's mix-out, also for an older song
    // still fading under it: a long mix of the new song lengthens the fade.
    const double mix_out = s_.Slot_MixOut[s_.Ply_Now];

    if (s_.Slot_FadeIn[i] && player.Volume() < 0 && position > s_.Slot_MixIn[i] &&
        position < s_.Slot_End[i] - mix_out) {
        if (s_.Slot_Vol[i] > 1) s_.Slot_Vol[i] = 0;
        player.Volume(s_.Slot_Vol[i]);
    }
    // A step that is a share of the present level: fast at first, then
    // slower, one step a run.
    const double intro = s_.Slot_MixIn[i] - s_.Slot_Start[i];
    if (position < s_.Slot_MixIn[i] && intro != 0) {
        Fade_Step[i] = player.Volume() / intro;
        Fade_Next[i] = player.Volume() - Fade_Step[i];
        player.Volume(Fade_Next[i]);
    }
    const double left = s_.Slot_End[i] - position;
    if (s_.Slot_FadeOut[i] && left < mix_out) {
        if (player.Volume() >= 0) player.Volume(-1);
        // Worked out in seconds left but applied per run, so the song is
        // gone in about three seconds: how a "Fade Out" record sounds.
        if (left != 0) Fade_Step[i] = (player.Volume() + 2000) / left;
        Fade_Next[i] = player.Volume() - Fade_Step[i];
        if (Fade_Next[i] > -2001 && Fade_Next[i] < 2001) player.Volume(Fade_Next[i]);
        if (Fade_Next[i] <= -1900 || left < 0) {
            player.Stop();
            s_.Slot_Started[i] = 1;
        }
    }
}

}  // namespace tavora
