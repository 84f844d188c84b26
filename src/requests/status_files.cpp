#include <algorithm>

#include "platform/clock.h"
#include "platform/path_map.h"
#include "requests/request_form.h"
#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "runtime/text_file.h"

namespace tavora {

void Request::Stat_Write() {
    Command9.BackColor = station_.Over_On != 0 ? kGreen : kButtonFace;
    MousePointer = 0;
    Stat_Slot = 0;
    if (ReqBrowser1.Tag == "1") ReqBrowser1.Visible = true;
    const int now_playing = station_.Ply_Now;
    if (PlayState && now_playing >= 1 && now_playing < kSlots && PlayState(now_playing) == 2) {
        Stat_Slot = now_playing;
    }
    if (Stat_Slot != 0) write_status_files();

    Idle_Count = std::max(0, Idle_Count - 1);
    if (Idle_Count == 0) {
        List_Top += kRows;
        if (List_Top > List_Last) {
            rs().MoveFirst();
            List_Top = 0;
        }
    }
    Show_Page();
}

void Request::write_status_files() {
    Station& s = station_;
    const double now = services_.clock.Now();
    const std::string time_text = date_text(TimeValueOf(now));
    TextWriter out(services_.paths.ToNative("c:\\tavora\\tqxstat.txt").path,
                   TextWriter::Mode::Create);
    std::string first = Label15.Caption;
    if (s.Req_Avail) {
        first += " ** We have " + Str(static_cast<double>(s.Req_Open)) +
                 " Requests in our cue. We Are Playing Back your request right now!";
    } else if (s.BP_On) {
        first += " ** We are in the middle of a TQXMS Exclusive Block Party playing " +
                 Str(static_cast<double>(s.BP_Block)) + " in a row by your favorite artist!";
    }
    if (air_state && !air_state().empty()) first += " ** " + air_state();
    out.write_line(first);
    for (int i = 1; i <= 10; ++i) {
        Stat_Hist[i] = Stat_Hist[i + 1];
        out.write_line(Stat_Hist[i]);
    }
    Stat_Hist[11] = s.Slot_Title[Stat_Slot];
    if (s.Ply7_On == 1 && Stat_Slot == 1) {
        // The seventh player's song went out between the sets: it joins the
        // history at the next write.
        Stat_Hist[10] = s.Slot_Title[kSeventhSlot] + " - " + time_text;
    }
    out.write_line(Stat_Hist[11]);
    if (Stat_Slot < 12) out.write_line("TQXAMS Plays All The Hits! Current Time: " + time_text);
    if (Stat_Slot < 11) out.write_line("Web requests are delayed 1hr due to RIAA rules");
    out.close();

    TextWriter ready(services_.paths.ToNative("c:\\tavora\\tqxsrdy.txt").path,
                     TextWriter::Mode::Create);
    ready.write_line(date_text(now));
    ready.close();
}

}  // namespace tavora
