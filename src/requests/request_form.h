#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/station.h"
#include "platform/event_loop.h"
#include "store/data_control.h"

namespace tavora {

// The system colour a control takes when painted "button face", and the two
// colours of a switch that is on and of Hold.
inline constexpr long kButtonFace = 0x8000000F;
inline constexpr long kGreen = 65280;
inline constexpr long kYellow = 65535;
inline constexpr int kRows = 14;

// A text field the rules test for "Null or empty".
inline bool null_or_empty(const Value& v) {
    return v.is_null() || v.text().empty();
}

// The jukebox request list: fourteen rows of the library in the sort in
// force, the request and count buttons, the playlist commands, the slow
// timer and the status files it writes.
class Request : public Form {
  public:
    Request(Station& station, const Services& services, LibraryPool& pool);

    // What the window needs from the layers above or beside it; the station
    // wires them. Unset hooks do nothing.
    std::function<void()> CheckTime;         // the look-ahead of the selection
    std::function<void()> Run_Command;       // the run control of the main window
    std::function<int(int slot)> PlayState;  // of the player of a slot; 0 when unset
    // Turns the jukebox's transport timer on or off; unset while the jukebox
    // isn't loaded.
    std::function<void(bool on)> TimerViewer;
    std::function<void()> wiz_it;     // the web list export
    std::function<bool()> Video_On;   // the jukebox's video button reads "Video On"
    std::function<void()> Video_Off;  // sets that button off and hides the player window
    // Beyond the rules: the dead-air watchdog's words for the status line,
    // empty while the air is fine.
    std::function<std::string()> air_state;

    void Form_Load();
    // Reads the current sort's extent into List_Last and paints the page.
    void Show_Page();
    void Skip_Spec();
    void Skip_Hol();
    void Hide_Rows();

    void BtnSrt_Click(int index);
    void BLtr_Click(int index);
    void Command3_Click();   // Prev Page
    void Command4_Click();   // Next Page
    void Command2_Click();   // Prev Letter
    void Command5_Click();   // Next Letter
    void Command11_Click();  // Srch
    void DBCombo1_Change();

    void RB_Click(int index);
    void RD_Click(int index);
    void Req_Add();
    void Req_Drop();
    void Command8_Click();  // Hold Request

    void TimerMar_Timer();
    void Stat_Write();
    void CmdBP_Click();
    void Command1_Click();   // S switch
    void Command10_Click();  // H switch
    void Command6_Click();   // marquee page
    void Command12_Click();  // M switch
    void Image1_Click();
    void Form_MouseMove();

    // The data behind the list, the playlist table and the open requests.
    DataControl datPrimaryRS;
    DataControl DataPL;
    DataControl DataTcheck;
    std::unique_ptr<Timer> TimerMar;

    // Set while a station manager's break is armed or on: the window flashes.
    bool Flash = false;

    // List state.
    long List_Top = 0;
    long List_Pos = 0;
    long List_Last = 0;
    int List_Row = 1;
    std::array<long, kRows + 1> Row_Pos{};  // 1 to 14
    int Sort_Field = 1;                     // 1 Title, 2 Artist
    std::string Srch_Text;
    std::string Srch_Field;  // the field the search box lists

    // Playlist state of this window.
    int PL_ScanState = 0;
    int PL_Marked = 0;
    int Auto_PL_First = 1, Auto_PL_Hit = 0;
    int Row_Hit = 0;  // the row whose button was clicked last
    // The marquee's page, and the status files: the slot they last reported,
    // the last titles (1 to 11) and the ticks until the idle line.
    std::string Marq_File = "c:\\tavora\\manual\\tqxhead1.htm";
    int Marq_Page = 1;
    int Stat_Slot = 0;
    std::array<std::string, 12> Stat_Hist{"None", "None", "None", "None", "None", "None",
                                          "None", "None", "None", "None", "None", "None"};
    int Idle_Count = 10;
    long PL_Id = 0;
    std::string PL_Name;
    std::string PL_Source;
    int PL_Answer = 0;
    std::string PL_AutoName;

    Control& RB(int i) { return *find("RB", i); }
    Control& RD(int i) { return *find("RD", i); }
    Control& Row_Label(int i) { return *find("Label1", i); }
    Control& BLtr(int i) { return *find("BLtr", i); }
    Control& BtnSrt(int i) { return *find("BtnSrt", i); }

    Control& Label2 = add("Label2");
    Control& Label15 = add("Label15");
    Control& Label16 = add("Label16");
    Control& Label17 = add("Label17");
    Control& Frame3 = add("Frame3");
    Control& Frame4 = add("Frame4");
    Control& Frame1 = add("Frame1");  // the rows, hidden while a set loads
    Control& Shape1 = add("Shape1");  // the break indicator
    Control& DBCombo1 = add_text("DBCombo1");
    Control& ReqBrowser1 = add("ReqBrowser1");
    Control& Image1 = add("Image1");
    Control& cmdClose = add("cmdClose");
    Control& CmdBP = add("CmdBP");
    Control& Command1 = add("Command1");
    Control& Command2 = add("Command2");
    Control& Command3 = add("Command3");
    Control& Command4 = add("Command4");
    Control& Command5 = add("Command5");
    Control& Command6 = add("Command6");
    Control& Command7 = add("Command7");  // the break button, wired by playback
    Control& Command8 = add("Command8");
    Control& Command9 = add("Command9");
    Control& Command10 = add("Command10");
    Control& Command11 = add("Command11");
    Control& Command12 = add("Command12");
    Control& Command13 = add("Command13");  // the web list, wired by the export

  private:
    Recordset& rs() { return datPrimaryRS.Recordset(); }
    // Repositions as the list always does: last, first, then n on.
    bool go_to(long position);
    void read_extent();
    void paint_row(int row);
    void show_letters(bool visible);
    int first_letter_at(long position);
    // The place of the sort field's first character in the letter order, on
    // every row of the list. Read again only when the sort, its field or the
    // library changed, so repeated jumps don't walk the library.
    const std::vector<std::uint32_t>& letters();
    void viewer_timer(bool on);
    // Sorts 0 to 12 and the two playlist stages.
    void apply_sort(int index);
    void fall_back_to_titles(int index);

    void PL_Dispatch(int& index);
    void PL_Start();
    void PL_New();
    void PL_Scan();
    void PL_Edit();
    void PL_Save();
    void save_list_rows();  // PL_Save's writes: the list's rows, the requests cleared
    void PL_Done();
    void Auto_Playlists();
    void write_status_files();

    struct LetterCache {
        std::string source;
        int field = 0;
        std::uint64_t generation = 0;
        std::vector<std::uint32_t> first;
    };
    LetterCache letter_cache_;

    Station& station_;
    const Services& services_;
};

}  // namespace tavora
