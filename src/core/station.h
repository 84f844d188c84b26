#pragma once

#include <array>
#include <string>

namespace tavora {

inline constexpr int kSlots = 16;  // slots 1 to 15; 0 is never used
inline constexpr int kPlayers = 7;
// The slots past the six of a set that the rules give a meaning to.
inline constexpr int kHoldSlot = 13;     // a song waits here while a chart lead takes its slot
inline constexpr int kSeventhSlot = 14;  // the seventh player's
inline constexpr int kCdSlot = 15;       // the CD player's

// The system's shared state: every variable that more than one window reads.
// One object per running station, owned by the application and passed by
// reference, so each test builds a fresh one. Members keep the names the
// rules are written with. True is -1 wherever a number stands for a boolean.
struct Station {
    // Start-up and the library.
    int Run_Mode = 1;    // 0 normal, 1 remote use, 2 auto start pending
    int Cmp_Fail = 0;    // 1 after the start-up compaction failed
    std::string Act_Db;  // path of the active library, in its stored form
    int Rev_Drive = 0;   // 1: a networked library's paths keep the master's drive

    // Saved screen state.
    double Wnd_Left = 210, Wnd_Height = 7950, Wnd_Width = 11565, Wnd_Top = 525;
    int Wnd_State = 2;
    bool Vid_On = false, Ply7_View = true, CD_On = false, Marq_On = true;

    // Session settings, kept in qxbp.ini and the Setup table.
    bool BP_On = false;  // block party
    bool BP_Tuesday = false;
    int BP_Block = 2;
    int BP_Chars = 5;
    int Snip_Max = 1;  // snippets in a row
    int Antiskip = 0;
    int MFilter = 0;                     // 1: a set keeps one file format
    int Least_Every = 15;                // rotation passes between least played ones
    int Ply7_Mix = 10, Ply7_MixOut = 7;  // the seventh player's mix out, and its saved form
    int Ply7_On = 0;
    int Power_On = 0, Power_Every = 0, Power_Ctr = 0;  // power play
    int Live_Pop = 0;                                  // the now-playing pop-up

    // Look-ahead: offsets past Now to when the next pick really starts,
    // and their sums with Now, frozen at each schedule check.
    double Look_Play = 0, Look_Sched = 0;
    double Clock_Play = 0, Clock_Sched = 0;

    // Category override.
    int Over_On = 0;
    double Over_End = 0;

    // Requests and playlists.
    bool Req_Avail = false;  // the request query has rows
    int Req_Open = 0;        // open requests
    int Req_Hold = 0;        // requests wait (a break, or the operator)
    int PL_Build = 0;        // a playlist is being built
    int PL_Marker = 0;       // the last pick was a playlist marker, not a song
    int PL_Next = 1;         // the next running number while a playlist is built
    int Auto_PL = 1;         // automatic playlist state
    int Web_Run = 0;         // 1 while the web list export walks the list

    // Web requests: the settings the station reads at start, and when the
    // last one was taken.
    bool IIS_On = false;
    bool IIS_AutoLoad = false;
    std::string IIS_Name = "TQXMS Direct";
    double IIS_LastTime = 0;

    // The station manager: its command state, its run state, and the break
    // order last read from qxsm.ini; the times hold while SM_State is above 0.
    int SM_State = 0;
    int Live_Mode = 0;
    bool Brk_Exit1 = false, Brk_Exit2 = false;
    double Break_Start = 0, Break_End = 0, Break_Date = 0;
    bool Brk_BP = false;
    int Brk_BPSongs = 0;
    bool Brk_CD = false, Brk_Skip = false, Brk_Play = false;

    // The play log.
    int Log_Due = 2;  // 0 log on, 1 a line waits, 2 log off
    std::string Log_Name;
    std::string Log_Line;

    // Selection and the bank between them: the slot being filled, the file
    // the last commit chose, whether the fallback took it (for the
    // schedule check) or found nothing it may take (the player side then
    // stops the run with a message).
    int Cue_Slot = 0;
    std::string Cue_File;
    int Fall_Used = 0;
    int Sel_Starved = 0;

    // The bank.
    int Ply_Now = 6;   // the slot on air
    int Load_Due = 0;  // a hand-over happened and Load_Up owes the next set
    int Load_Limit = 0, Load_Busy = 0;

    // The CD: the mode, the disc in the drive (its number and its key, the
    // number then "CD"), and selection's place on it: the row it scans
    // from, and the pass that offers only the disc's tracks.
    int CD_Mode = 0;
    int CD_Disc = 0;
    std::string CD_Id;
    int CD_Pos = 0;
    int CD_Pass = 0;

    // Cue slots, parallel arrays indexed by slot number.
    std::array<std::string, kSlots> Slot_File{};
    std::array<std::string, kSlots> Slot_Title{};
    std::array<int, kSlots> Slot_Started{};
    std::array<int, kSlots> Slot_Ready{};
    std::array<long, kSlots> Slot_RecID{};
    std::array<int, kSlots> Slot_Special{};
    std::array<double, kSlots> Slot_Vol{};
    std::array<double, kSlots> Slot_Start{};
    std::array<double, kSlots> Slot_End{};
    std::array<double, kSlots> Slot_MixIn{};
    std::array<double, kSlots> Slot_MixOut{};
    std::array<bool, kSlots> Slot_FadeIn{};
    std::array<bool, kSlots> Slot_FadeOut{};
    std::array<double, kSlots> Slot_Length{};

    Station();

    // The defaults that start-up sets, in its order; `now` is the clock's
    // date and time at that moment.
    void set_defaults(double now);
    // Puts every field of one slot back to the empty slot.
    void clear_slot(int slot);
    // Copies the record a slot holds (every field but its state: started
    // and ready) to another slot.
    void copy_slot(int from, int to);
};

}  // namespace tavora
