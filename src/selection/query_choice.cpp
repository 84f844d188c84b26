#include "platform/clock.h"
#include "runtime/convert.h"
#include "runtime/dates.h"
#include "runtime/random.h"
#include "selection/selection.h"

namespace tavora {

namespace {

const char* query_for_rotation(Station& s) {
    if (s.BP_Done == 0 && s.BP_On) return "BPSort";
    if (s.Hot_Active == 1) return "HotList";
    if (s.Least_Ctr > s.Least_Every) {
        // The two least played orders take turns from one pass to the next.
        if (s.Least_Flip != 0) {
            s.Least_Flip = 0;
            return "LeastPlayed";
        }
        s.Least_Flip = 1;
        return "LastPlay";
    }
    return "NormSel";
}

}  // namespace

void Selection::GetQry() {
    s_.Qry_Empty = 0;
    Data3.DatabaseName = active_database();
    switch (s_.Sel_State) {
        case 0:
            Data3.RecordSource = "Timed Promo";
            break;
        case 1:
            Data3.RecordSource = "SRequest";
            break;
        case 3:
            Data3.RecordSource = query_for_rotation(s_);
            break;
        case 8:
            Data3.RecordSource = "NormSel";
            break;
        case 9:
            Data3.RecordSource = "Promo2";
            break;
        case 10:
            Data3.RecordSource = "CDNow";
            break;
        default:
            break;  // other states keep the query that was set
    }
    Data3.Refresh();
    Recordset& rows = Data3.Recordset();
    const long count = rows.RecordCount();
    if (count == 0) {
        s_.Qry_Empty = 1;
        if (Data3.RecordSource == "SRequest") s_.Req_Avail = false;
        if (s_.Sel_State == 1) s_.PL_Random = 0;
        if (hooks.trace) trace("source " + Data3.RecordSource + ": no rows");
        return;
    }
    if (Data3.RecordSource == "SRequest") {
        s_.Req_Avail = true;
        s_.Req_Open = CInt(count);
    }
    rows.MoveLast();
    rows.MoveFirst();
    const long n = rows.RecordCount();

    // The generator is never seeded, so the clock's seconds are what makes
    // one start of the station differ from the next.
    s_.Rnd_Start = static_cast<int>(Int((n - 1) * services_.random.next() + 1));
    const int seconds = Second(services_.clock.Now());
    int v = CInt(s_.Rnd_Start + seconds);
    if (v > n - 1) {
        v = s_.Rnd_Start - seconds;
        if (v < 1) v = s_.Rnd_Start;
    }
    s_.Rnd_Start = v;

    // Requests come in list order, from the second row: the top request
    // plays only when no other open request passes.
    if (s_.PL_Random == 0 && s_.Sel_State == 1) s_.Rnd_Start = 0;
    if (s_.Sel_State == 3 && s_.Hot_Active == 0 && s_.Least_Ctr > s_.Least_Every) {
        s_.Rnd_Start = 0;
        s_.Least_Ctr = 0;
        if (s_.Least_Flip == 0) caption("Searching Least Played");
        if (s_.Least_Flip == 1) caption("Search Least Frequent Play");
    }
}

}  // namespace tavora
