#pragma once

#include <array>
#include <string>

namespace tavora {

inline constexpr int kSlots = 16;  // slots 1 to 15; 0 is never used
inline constexpr int kPlayers = 7;

// The system's shared state: every variable that more than one window reads.
// One object per running station, owned by the application and passed by
// reference, so each test builds a fresh one. Members keep the names the
// rules are written with. True is -1 wherever a number stands for a boolean.
struct Station {
    int Hot_Left = 0;
    int Cmp_Fail = 0;
    int Web_Run = 0;
    int Snip_Max = 1;
    double Wnd_Left = 210, Wnd_Height = 7950, Wnd_Width = 11565, Wnd_Top = 525;
    std::array<std::string, 101> Active_Cats{};  // 1 to 100
    int Wnd_State = 2;
    bool Req_Avail = false;
    double Over_Len = 5.0 / 1440.0;
    double Over_End = 0;
    double IIS_LastTime = 0;
    std::string Marq_File = "c:\\tavora\\manual\\tqxhead1.htm";
    int Marq_Page = 1;
    int Over_On = 0;
    int Auto_PL_First = 1;
    int Req_Open = 0;
    bool IIS_On = false;
    bool IIS_AutoLoad = false;
    int IIS_Line = 0, IIS_Saved = 0, IIS_Tick = 10;
    int IIS_Minutes = 10, IIS_MinLeft = 10;
    std::string IIS_Name = "TQXMS Direct";
    std::string IIS_File = "c:\\tavora\\newreq.tqf";
    std::string Debug_Step;
    int Fall_Used = 0;
    int Ply_Closing = 0;
    int SM_State = 0;
    int Live_Ticks = 0;
    int Live_Mode = 0;
    int Idle_Count = 10;
    int PL_Build = 0, PL_Marker = 0;
    int Ui_Tick = 0;
    int Skip_Quiet = 0;
    int Req_Hold = 0;
    int MFilter = 0;
    int Antiskip = 0;
    int Stop_Hold = 0;
    int PL_Marked = 0, Auto_PL = 1;
    int Ply7_Mix = 10;
    int Log_Due = 2;  // 0 log on, 1 a line waits, 2 log off
    int APlayer7_Busy = 0;
    int Auto_PL_Hit = 0;
    int CD_Mode = 0;
    int Run_Mode = 1;  // 0 normal, 1 remote use, 2 auto start pending
    int Rev_Drive = 0;
    int Live_Pop = 0, Pause_At = 0;
    int Least_Every = 15;
    std::string Log_Name;
    std::string Log_Line;
    int Ply_View = 0;
    double Look_Play = 0, Look_Sched = 0;
    double Clock_Play = 0, Clock_Sched = 0;
    int Row_Hit = 0;
    int Load_Due = 0;
    int Ply7_On = 0;
    int All_Charts = 0;
    int Load_Limit = 0, Load_Busy = 0;
    int Ply_Now = 6;
    std::array<std::string, 6> IIS_Recent{};  // 1 to 5
    std::array<std::string, 12> Stat_Hist{};  // 1 to 11
    bool Vid_On = false, Ply7_View = true, CD_On = false, Marq_On = true;
    int Ply7_MixOut = 7;
    int Power_On = 0, Power_Every = 0, Power_Ctr = 0;

    // The break order last read from the station manager's qxsm.ini; the
    // times hold while SM_State is above 0.
    bool Brk_Exit1 = false, Brk_Exit2 = false;
    double Break_Start = 0, Break_End = 0, Break_Date = 0;
    bool Brk_BP = false;
    int Brk_BPSongs = 0;
    bool Brk_CD = false, Brk_Skip = false, Brk_Play = false;

    // Requests: the next running number while a playlist is built, and the
    // slot the status files last reported.
    int PL_Next = 1;
    int Stat_Slot = 0;

    // Selection's place on the CD: the row it scans from, and the pass
    // that offers only the disc's tracks.
    int CD_Pos = 0;
    int CD_Pass = 0;
    // Set when the fallback found no row it may take: the slot stays empty
    // and the player side stops the run with a message.
    int Sel_Starved = 0;

    // The file of the last commit.
    std::string Cue_File;

    // Schedule engine.
    int Active_Next = 0;
    int Sched_Hit = 0, Sched_Changed = 0, Sched_Stopped = 0;

    // Session settings kept in qxbp.ini.
    bool BP_On = false;
    bool BP_Tuesday = false;
    int BP_Block = 2;
    int BP_Chars = 5;

    std::string Act_Db;  // path of the active library, in its stored form

    // The CD in the drive: its number and its key, the number then "CD".
    int CD_Disc = 0;
    std::string CD_Id;

    // The bank.
    int Cue_Slot = 0;
    int Ply_Scan = 0;
    int Settle_Count = 0;

    // The transport and its displays.
    int Load_Late = 0;  // the active song is too short for a Load_Up while it plays
    int Load_Once = 0;  // a set has started since the run began
    int Ply7_Secs = 0;  // seconds the seventh song has played
    int Video_Size = 2;
    int OnAir_Phase = 0;  // 0 pop-up off, 1 idle or "SOON", 2 mix passed, 3 before the mix-in
    double Talk_Gap = 0, Talk_Time = 0;

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
