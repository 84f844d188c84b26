#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "core/services.h"
#include "core/station.h"
#include "core/windows/frm_loding.h"
#include "core/windows/qx_main.h"
#include "store/data_control.h"

namespace tavora {

class frmTypeLookup;

// How a slot was filled, for the observer the simulator prints.
struct PickReport {
    enum class Way { Rules, Fallback, CdFallback, Starved };
    Way way = Way::Rules;
    int slot = 0;
    long rec_id = 0;            // 0 when starved
    std::string record_source;  // the query the row came from
};

// What the layers above wire in. Every member may stay empty.
struct SelectionHooks {
    // One line per source tried and per row judged, when an operator asks
    // why a pick was made. Nothing is built while it is empty.
    std::function<void(const std::string&)> trace;
    std::function<void(const PickReport&)> on_pick;
    // The CD player's seek to a track, for a pick in CD mode.
    std::function<void(int track)> cd_seek;
};

// The run that chooses the next recording for a cue slot: the stack of
// sources, the eligibility rules, the block party scan, the commit of a pick
// and its chart lead. Works on the shared station state and on `Data3`, the
// working recordset whose record source it switches between the stored
// queries.
class Selection {
  public:
    Selection(Station& station, Services& services, LibraryPool& pool, QXMain& main,
              frmLoding& loading, frmTypeLookup& types);

    DataControl Data3;
    DataControl DataPL;  // the Playlist table, for playlist markers
    SelectionHooks hooks;
    // Beyond the rules, off by default here: the seventh player's fallback
    // takes only what its own rule would take, while the library has it.
    bool bridge_songs_only = false;

    // The state of the run, kept from one pick to the next. Sel_State is
    // the source tried (0 timed promos, 1 requests, 3 rotation, 8 the
    // seventh player's, 9 promos, 10 the CD); the sweep starts at
    // Rnd_Start.
    int Sel_State = 0, Sel_Found = 0;
    int Qry_Empty = 0;
    int Rnd_Start = 0, Scan_Pos = 0, Scan_Count = 0;
    int Req_Skip = 0;
    int Hot_Active = 0;
    int Least_Ctr = 0, Least_Flip = 0;
    int Promo_Pass = 0;
    int Pick_Count = 0, Fall_Count = 0;
    int Two_X = 0;  // the row is charted, so it may play twice its limit
    std::string Set_Format;
    int Snip_Run = 0;
    int PL_Random = 0;
    // The block party: the last picks' artist and titles, and the scan.
    std::string BP_Artist = "a";
    std::array<std::string, 5> BP_Titles{"a", "a", "a", "a", "a"};
    std::array<std::string, 5> BP_Artists{"a", "a", "a", "a", "a"};
    int BP_Count = 0, BP_Done = 0, BP_Full = 0, BP_Scan = 0;
    // The last commit's chart lead.
    std::string Lead_Type;
    int Lead_Pos = 0, Lead_Field = 0;

    // The player side's entry: fills Cue_Slot, unless the pick was a
    // playlist marker (PL_Marker) or nothing could be taken (Sel_Starved).
    void auto_run();
    void GetNew();
    void GetQry();

    // The rules, on the current row of Data3.
    void ApplyRules();
    bool seventh_may_take(Recordset& rows);
    void Filter_It();
    void Filter_HotCheck();
    void Block_Party_Scan();
    void Push_Artist();
    void Push_Title();

    // The commit of the current row into Cue_Slot.
    void Load_AmTemps();
    void Check_Lead();
    void Load_Playlist();

  private:
    // Driver steps.
    void sweep();
    void step_state();
    void fallback();
    long fallback_row_from(long start, bool songs_only);
    void cd_fallback();
    // Commits the row the fallback stands on, counted in panel 7 and told
    // to the schedule check through Fall_Used.
    void take_fallback(PickReport::Way way);
    void go_to(long position);
    void write_done();
    const char* query_for_rotation();

    // Filter steps.
    // In CD mode only the wanted tracks of the disc in the drive are offered;
    // true when the current row was dealt with so.
    bool offer_cd_track();
    void weigh_cd_track(Recordset& rows);
    void forget_cd_pos();
    const char* screen_row();
    const char* judge_row();
    const char* limit(int count_field, int max_field, int reset_field, const char* unit,
                      const char* why);
    bool in_windows(double t);
    void close_judgement(const char* why);
    void accept();
    void count_categories();
    void load_lead(int slot);
    // Puts Data3 back on the query and row a commit step found it on.
    void return_to(const std::string& source, long position);

    std::string active_database() const;
    void caption(const std::string& text) { loading_.Label1.Caption = text; }
    void trace(const std::string& line) const {
        if (hooks.trace) hooks.trace(line);
    }
    void trace_row(const char* verdict);
    void report(PickReport::Way way, long rec_id);

    Station& s_;
    Services& services_;
    QXMain& main_;
    frmLoding& loading_;
    frmTypeLookup& types_;
    // The library generation the sweep last saw, moved on by the rules' own
    // writes that change no row's membership or order in any selection
    // query (the limit resets), so that they cost no re-query.
    std::uint64_t walked_generation_ = 0;
    // The row CD_Pos stands on, as the CD fallback ranks the disc's rows:
    // switched off last, then never played, then played longest ago, then
    // the lower track.
    struct CdRank {
        bool off = false;
        bool played = false;
        double when = 0;
        int position = 0;
        bool operator<(const CdRank& other) const;
    };
    std::optional<CdRank> cd_rank_;
};

}  // namespace tavora
