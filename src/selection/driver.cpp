#include <algorithm>

#include "platform/clock.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/dates.h"
#include "runtime/random.h"
#include "runtime/strings.h"
#include "selection/fields.h"
#include "selection/selection.h"
#include "selection/type_lookup.h"

namespace tavora {

Selection::Selection(Station& station, Services& services, LibraryPool& pool, QXMain& main,
                     frmLoding& loading, frmTypeLookup& types)
    : Data3(pool),
      DataPL(pool),
      s_(station),
      services_(services),
      main_(main),
      loading_(loading),
      types_(types) {
    DataPL.RecordSource = "Playlist";
}

std::string Selection::active_database() const {
    return services_.paths.ToNative(s_.Act_Db).path;
}

void Selection::auto_run() {
    Data3.DatabaseName = active_database();
    Data3.Refresh();
    Recordset& rows = Data3.Recordset();
    if (rows.RecordCount() > 1) rows.MoveLast();
    // One commit for the run's writes and one read transaction for its
    // reads, instead of one of each per row.
    if (const std::shared_ptr<Library> library = rows.library()) {
        Transaction batch = library->transaction();
        GetNew();
        batch.commit();
    } else {
        GetNew();
    }
    if (s_.PL_Marker == 0 && s_.Sel_Starved == 0) {
        s_.Slot_File[s_.Cue_Slot] = s_.Cue_File;
        s_.Slot_Ready[s_.Cue_Slot] = 1;
        s_.Slot_Started[s_.Cue_Slot] = 0;
    }
}

void Selection::GetNew() {
    BP_Done = 0;
    BP_Scan = 0;
    Sel_Found = 0;
    Sel_State = 0;
    s_.Sel_Starved = 0;
    if (hooks.trace) trace("GetNew for slot " + std::to_string(s_.Cue_Slot));

    if (s_.Ply7_On == 1 && s_.Cue_Slot == kSeventhSlot) Sel_State = 8;
    if (s_.Cue_Slot == kCdSlot) Sel_State = 10;
    GetQry();
    // The seventh player starts on NormSel in the rotation state: no promo,
    // no request, no hot list, no block party.
    if (s_.Ply7_On == 1 && s_.Cue_Slot == kSeventhSlot) Sel_State = 3;
    Scan_Count = Data3.Recordset().RecordCount();
    Hot_Active = 0;

    while (Sel_Found == 0) {
        if (Data3.RecordSource == "BPSort" && s_.BP_On) {
            BP_Full = 0;
            if (s_.BP_Tuesday && Weekday(services_.clock.Now()) == 3) {
                if (BP_Count == 2) BP_Full = 1;
            } else if (BP_Count >= s_.BP_Block) {
                BP_Full = 1;
            }
            if (BP_Full == 0) Block_Party_Scan();
        }
        if (Sel_Found == 0 && Qry_Empty == 0) sweep();
        if (Sel_Found == 0) step_state();
        if (Sel_State == 4 && Sel_Found == 0) {
            fallback();
            if (s_.Sel_Starved != 0) return;
        }
        if (Sel_Found == 0 && Sel_State != 4 && Sel_State != 11) GetQry();
        if (Sel_State == 11 && Sel_Found == 0) cd_fallback();
        if (Sel_State > 10) Sel_State = 10;
    }
}

void Selection::go_to(long position) {
    Recordset& rows = Data3.Recordset();
    const auto& library = rows.library();
    if (library == nullptr || library->generation() != walked_generation_) {
        Data3.Refresh();
        if (rows.library() != nullptr) walked_generation_ = rows.library()->generation();
    }
    rows.MoveLast();
    rows.MoveFirst();
    rows.Move(position);
}

void Selection::write_done() {
    const auto& library = Data3.Recordset().library();
    if (library != nullptr && library->known_generation() == walked_generation_ + 1)
        walked_generation_ = library->known_generation();
}

// Both sweeps start from Rnd_Start less one (a start of 0 or 1 from the
// second row), so the row at Rnd_Start is seen twice and row 0 only by the
// backward sweep. The row set is looked at again before every row because
// a rule may have changed a row.
void Selection::sweep() {
    if (Rnd_Start == 0) Rnd_Start = 1;
    Scan_Pos = Rnd_Start > 1 ? Rnd_Start - 1 : Rnd_Start;
    Recordset& rows = Data3.Recordset();
    rows.MoveLast();
    rows.MoveFirst();
    rows.Move(Scan_Pos);
    Scan_Count = rows.RecordCount();
    forget_cd_pos();
    if (Data3.RecordSource == "BPSort") return;
    if (hooks.trace) {
        trace("source " + Data3.RecordSource + " (state " + std::to_string(Sel_State) +
              "): " + std::to_string(Scan_Count) + " rows, sweep from " + std::to_string(Scan_Pos));
    }
    while (Scan_Pos < Scan_Count && Sel_Found == 0) {
        go_to(Scan_Pos);
        ApplyRules();
        ++Scan_Pos;
    }
    Scan_Pos = Rnd_Start;
    while (Scan_Pos >= 0 && Sel_Found == 0) {
        go_to(Scan_Pos);
        ApplyRules();
        --Scan_Pos;
    }
}

void Selection::step_state() {
    if (Hot_Active == 1 && Sel_State == 3) Sel_State = 2;
    ++Sel_State;
    if (s_.Req_Hold == 1 && Sel_State == 1) Sel_State = 2;
    // With a long request list every third entry to the request pass is
    // passed over, so that the rotation still gets air time.
    if (Sel_State == 1 && s_.Req_Open >= 11) {
        ++Req_Skip;
        if (Req_Skip > 2) {
            Sel_State = 2;
            Req_Skip = 0;
        }
    }
    if (Sel_State == 2 && (s_.Power_Ctr > 0 || s_.Power_On == 0)) Sel_State = 3;
    if (Sel_State == 2) {
        caption("Searching Hot List");
        Hot_Active = 1;
        Sel_State = 3;
    } else {
        Hot_Active = 0;
    }
    if (Hot_Active == 0 && Sel_State == 3 && BP_Done == 0 && s_.BP_On)
        caption("Block Party Search " + BP_Artist + Str(BP_Count));
    if (Hot_Active == 0 && Sel_State == 4 && Data3.RecordSource == "BPSort") {
        BP_Done = 1;
        Sel_State = 3;
    }
}

namespace {

// Random draws the fallback makes at the most; past them it walks on from
// the last draw, so that one row it may take among very many is still found
// in bounded time.
constexpr long kFallbackDraws = 300;

bool fallback_may_take(Recordset& rows) {
    return !rows.IsEOF() && Left(field(rows, rec::LongTitle).text(), 2) != "CD";
}

}  // namespace

// The answer when every rule said no: a row of the whole library at random,
// judged by nothing but not being a CD track. Two numbers are drawn per
// attempt and the first is thrown away.
void Selection::fallback() {
    Data3.DatabaseName = active_database();
    Data3.RecordSource = "recordings1";
    Data3.Refresh();
    if (fallback_row_from(1, false) == 0) {
        s_.Sel_Starved = 1;
        trace("fallback: no row of the library can be taken; the slot stays empty");
        report(PickReport::Way::Starved, 0);
        return;
    }
    // Beyond the rules: a clip shorter than a set change leaves the air
    // silent after the bridge, so the seventh player draws again for a song
    // while the library has one it could take.
    const bool songs_only =
        s_.Cue_Slot == kSeventhSlot && bridge_songs_only && fallback_row_from(1, true) != 0;
    Recordset& rows = Data3.Recordset();
    const long draws = std::min(kFallbackDraws, rows.RecordCount());
    for (long attempt = 1; Sel_State == 4; ++attempt) {
        if (attempt <= draws) {
            for (int draw = 0; draw < 2; ++draw) {
                Data3.Refresh();
                rows.MoveLast();
                rows.MoveFirst();
                Rnd_Start = rows.RecordCount() - 1;
                Scan_Pos = static_cast<int>(Int(Rnd_Start * services_.random.next() + 1));
            }
            Data3.Refresh();
            rows.Move(Scan_Pos);
        } else {
            Scan_Pos = static_cast<int>(fallback_row_from(Scan_Pos, songs_only));
        }
        if (fallback_may_take(rows) && (!songs_only || seventh_may_take(rows))) {
            if (hooks.trace) {
                trace("fallback: row " + field(rows, rec::RecID).text() +
                      (attempt <= draws ? " at random" : " after the last draw"));
            }
            take_fallback(PickReport::Way::Fallback);
            Sel_State = 5;
        }
    }
    Sel_State = 4;
}

// The position of the first row the fallback may take (a song the seventh
// player may take, when `songs_only`) from `start` on, round
// past the last row to row 1, with the row set left on it; 0 when there is
// none. Like the draws, it never reaches row 0.
long Selection::fallback_row_from(long start, bool songs_only) {
    Recordset& rows = Data3.Recordset();
    const long last = rows.RecordCount() - 1;
    const long from = std::max(start, 1L);
    for (long i = 0; i < last; ++i) {
        const long position = (from - 1 + i) % last + 1;
        rows.MoveFirst();
        rows.Move(position);
        if (fallback_may_take(rows) && (!songs_only || seventh_may_take(rows))) return position;
    }
    return 0;
}

void Selection::cd_fallback() {
    Recordset& rows = Data3.Recordset();
    rows.MoveLast();
    rows.MoveFirst();
    Data3.Refresh();
    rows.Move(s_.CD_Pos);
    if (hooks.trace) trace("CD fallback: the disc's row at " + std::to_string(s_.CD_Pos));
    take_fallback(PickReport::Way::CdFallback);
}

void Selection::take_fallback(PickReport::Way way) {
    const long rec_id = static_cast<long>(field(Data3.Recordset(), rec::RecID).number());
    Load_AmTemps();
    s_.Fall_Used = -1;
    ++Fall_Count;
    main_.Count(7);
    Sel_Found = 1;
    report(way, rec_id);
}

void Selection::report(PickReport::Way way, long rec_id) {
    if (!hooks.on_pick) return;
    PickReport pick;
    pick.way = way;
    pick.slot = s_.Cue_Slot;
    pick.rec_id = rec_id;
    pick.record_source = Data3.RecordSource;
    hooks.on_pick(pick);
}

void Selection::trace_row(const char* verdict) {
    if (!hooks.trace) return;
    Recordset& rows = Data3.Recordset();
    trace("  row " + field(rows, rec::RecID).text() + " at " + std::to_string(Scan_Pos) + " \"" +
          field(rows, rec::Title).text() + " - " + field(rows, rec::Artist).text() +
          "\": " + verdict);
}

}  // namespace tavora
