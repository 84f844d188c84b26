#include "platform/clock.h"
#include "runtime/convert.h"
#include "runtime/dates.h"
#include "runtime/random.h"
#include "selection/selection.h"

namespace tavora {

const char* Selection::query_for_rotation() {
    if (BP_Done == 0 && s_.BP_On) return "BPSort";
    if (Hot_Active == 1) return "HotList";
    if (Least_Ctr > s_.Least_Every) {
        // The two least played orders take turns from one pass to the next.
        if (Least_Flip != 0) {
            Least_Flip = 0;
            return "LeastPlayed";
        }
        Least_Flip = 1;
        return "LastPlay";
    }
    return "NormSel";
}

void Selection::GetQry() {
    Qry_Empty = 0;
    Data3.DatabaseName = active_database();
    switch (Sel_State) {
        case 0:
            Data3.RecordSource = "Timed Promo";
            break;
        case 1:
            Data3.RecordSource = "SRequest";
            break;
        case 3:
            Data3.RecordSource = query_for_rotation();
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
        Qry_Empty = 1;
        if (Data3.RecordSource == "SRequest") s_.Req_Avail = false;
        if (Sel_State == 1) PL_Random = 0;
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
    Rnd_Start = static_cast<int>(Int((n - 1) * services_.random.next() + 1));
    const int seconds = Second(services_.clock.Now());
    int v = CInt(Rnd_Start + seconds);
    if (v > n - 1) {
        v = Rnd_Start - seconds;
        if (v < 1) v = Rnd_Start;
    }
    Rnd_Start = v;

    // Requests come in list order, from the second row: the top request
    // plays only when no other open request passes.
    if (PL_Random == 0 && Sel_State == 1) Rnd_Start = 0;
    if (Sel_State == 3 && Hot_Active == 0 && Least_Ctr > s_.Least_Every) {
        Rnd_Start = 0;
        Least_Ctr = 0;
        if (Least_Flip == 0) caption("Searching Least Played");
        if (Least_Flip == 1) caption("Search Least Frequent Play");
    }
}

}  // namespace tavora
