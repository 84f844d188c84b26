#include "requests/request_form.h"

#include "platform/clock.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/dates.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

constexpr const char* kSortCaptions[] = {
    "Title",
    "Artist",
    "Plays or Newest",
    "Most Requested",
    "POP Only",
    "Dance Only",
    "AM/AC Only",
    "Charts Only",
    "Country Only",
    "PlayList Titles Only",
    "Add/Modify Playlist",
    "Playlist",
    "Current Requests/Playlist",
};

constexpr long kRowColour = 14737632;
constexpr long kNewColour = 8438015;
constexpr long kChartColour = 16761087;
constexpr long kRequestedColour = 8454016;
constexpr long kPlaylistColour = 255;

struct ChartTip {
    const char* field;
    const char* tip;
};
// Later charts overwrite earlier ones, so the order is part of the rule.
constexpr ChartTip kChartTips[] = {
    {"C40", "TOP AC Pick #"},
    {"D40", "TOP Dance Pick #"},
    {"T40", "TOP 40 Pick #"},
    {"AM40", "TOP Requested Pick #"},
};

}  // namespace

Request::Request(Station& station, const Services& services, LibraryPool& pool)
    : Form("Request"),
      datPrimaryRS(pool),
      DataPL(pool),
      DataTcheck(pool),
      station_(station),
      services_(services) {
    Caption = "Tavora Music System Request List (Click Here To View Jukebox)";
    datPrimaryRS.RecordSource = "Title Sort";
    DataPL.RecordSource = "Playlist";
    DataTcheck.RecordSource = "SRequest";

    for (int i = 1; i <= kRows; ++i) {
        add("RB", i);
        add("RD", i);
        add("Label1", i);
    }
    for (int i = 0; i < 26; ++i)
        add("BLtr", i).Caption = std::string(1, static_cast<char>('A' + i));
    add("BLtr", 26).Caption = "Sort";
    for (int i = 0; i <= 12; ++i)
        add("BtnSrt", i).Caption = kSortCaptions[i];

    cmdClose.Caption = "&Run";
    CmdBP.Caption = "BP";
    Command1.Caption = "S Off";
    Command2.Caption = "Prev Letter";
    Command3.Caption = "Prev Page";
    Command4.Caption = "Next Page";
    Command5.Caption = "Next Letter";
    Command6.Caption = "P";
    Command7.Caption = "Break";
    Command8.Caption = "Hold Request";
    Command8.ToolTipText = "Puts All Requested Songs On Hold";
    Command8.BackColor = kButtonFace;
    Command10.Caption = "H Off";
    Command11.Caption = "Srch";
    Command12.Caption = "M";
    Command13.Caption = "H";
    Label17.Caption = "Tavora Music System";
    Shape1.BackColor = kButtonFace;
    Label2.Caption = "Please Wait... Automatic Loading In Process.";
    Label2.Visible = false;
    Frame4.Visible = false;
    DBCombo1.Visible = false;
    DBCombo1.Text = "Type Here to refine search";
    ReqBrowser1.Visible = false;
    ReqBrowser1.Tag = "0";

    on_click("RB", [this](int i) { RB_Click(i); });
    on_click("RD", [this](int i) { RD_Click(i); });
    on_click("BtnSrt", [this](int i) { BtnSrt_Click(i); });
    on_click("BLtr", [this](int i) { BLtr_Click(i); });
    on_click("Command2", [this](int) { Command2_Click(); });
    on_click("Command3", [this](int) { Command3_Click(); });
    on_click("Command4", [this](int) { Command4_Click(); });
    on_click("Command5", [this](int) { Command5_Click(); });
    on_click("Command11", [this](int) { Command11_Click(); });
    on("DBCombo1", "Change", [this](int) { DBCombo1_Change(); });
    on_click("Command8", [this](int) { Command8_Click(); });
    on_click("CmdBP", [this](int) { CmdBP_Click(); });
    on_click("Command1", [this](int) { Command1_Click(); });
    on_click("Command10", [this](int) { Command10_Click(); });
    on_click("Command6", [this](int) { Command6_Click(); });
    on_click("Command12", [this](int) { Command12_Click(); });
    on_click("Image1", [this](int) { Image1_Click(); });
    on_click("cmdClose", [this](int) {
        if (Run_Command) Run_Command();
    });

    TimerMar = services_.loop.CreateTimer([this] { TimerMar_Timer(); });
    TimerMar->SetInterval(10000);
}

void Request::Form_Load() {
    Loaded = true;
    Frame3.Visible = false;
    show_letters(true);
    Command2.Visible = true;
    Command5.Visible = true;
    Command11.Visible = true;
    Sort_Field = 1;
    Label16.Caption = "List Is Sorted By Title";
    Label15.Caption = "";
    const double now = services_.clock.Now();
    if (Month(now) == 12 && Day(now) < 26) {
        Command10.Caption = "H On";
        Command10.BackColor = kGreen;
    }
    const std::string library = services_.paths.ToNative(station_.Act_Db).path;
    for (DataControl* data : {&datPrimaryRS, &DataPL, &DataTcheck})
        data->DatabaseName = library;
    datPrimaryRS.Refresh();
    read_extent();
    rs().MoveFirst();
    List_Top = rs().AbsolutePosition() < 0 ? 0 : rs().AbsolutePosition();
    Show_Page();
    TimerMar->SetEnabled(true);
    Stat_Write();
}

bool Request::go_to(long position) {
    Recordset& r = rs();
    r.MoveLast();
    r.MoveFirst();
    if (position > 0) r.Move(position);
    return !r.IsEOF() && !r.IsBOF();
}

void Request::read_extent() {
    rs().MoveLast();
    List_Last = rs().AbsolutePosition();
}

void Request::show_letters(bool visible) {
    for (int i = 0; i < 26; ++i)
        BLtr(i).Visible = visible;
}

void Request::viewer_timer(bool on) {
    if (TimerViewer) TimerViewer(on);
}

void Request::Show_Page() {
    for (int i = 1; i <= kRows; ++i)
        RB(i).ToolTipText.clear();
    MousePointer = 11;
    if (CheckTime) CheckTime();
    List_Pos = List_Top;
    datPrimaryRS.Refresh();
    for (List_Row = 1; List_Row <= kRows; ++List_Row) {
        Row_Label(List_Row).Visible = true;
        RB(List_Row).Visible = true;
        RD(List_Row).Visible = true;
        Skip_Spec();
        if (List_Row == 1) List_Top = List_Pos;
        if (List_Pos > List_Last) {
            Hide_Rows();
            return;
        }
        go_to(List_Pos);
        paint_row(List_Row);
        ++List_Pos;
    }
    ++List_Pos;
    MousePointer = 0;
}

void Request::paint_row(int row) {
    Recordset& r = rs();
    const Value requested = r.Fields("Request This Month");
    std::string artist = r.Fields("Artist").text();
    if (requested > Value(0)) artist += " :->" + LTrim(Str(requested));
    Row_Label(row).Caption = artist;
    Control& button = RB(row);
    button.Caption = tavora::Left(r.Fields("Title").text(), 28);
    const Value sel = r.Fields("Sel");
    RD(row).Caption = sel.text();

    button.BackColor = kRowColour;
    const Value created = r.Fields("CreationDate");
    const double now = services_.clock.Now();
    if (!created.is_null() && (now + 1) - (created.number() + 1) < 14) {
        button.BackColor = kNewColour;
        button.ToolTipText = "N E W  S E L E C T I O N";
    }
    for (const ChartTip& chart : kChartTips) {
        const Value place = r.Fields(chart.field);
        if (place > Value(0)) {
            button.BackColor = kChartColour;
            button.ToolTipText = chart.tip + place.text();
        }
    }
    if (sel > Value(0)) button.BackColor = kRequestedColour;
    if (sel > Value(999)) {
        button.BackColor = kPlaylistColour;
        button.ToolTipText = "Play List Selection Cue In Process";
    }
}

void Request::Skip_Spec() {
    if (Command1.Caption == "S Off") {
        Recordset& r = rs();
        go_to(List_Pos);
        while (!r.IsEOF() && !null_or_empty(r.Fields("Source"))) {
            r.MoveNext();
            ++List_Pos;
        }
    }
    if (station_.Web_Run != 1 && List_Row < 15) Row_Pos[List_Row] = List_Pos;
    Skip_Hol();
}

void Request::Skip_Hol() {
    if (Command10.Caption == "H Off") {
        Recordset& r = rs();
        go_to(List_Pos);
        while (!r.IsEOF()) {
            const Value type = r.Fields("Type");
            if (type.is_null()) break;
            const std::string text = type.text();
            if (tavora::Left(text, 7) != "Holiday" && tavora::Left(text, 4) != "Xmas") break;
            r.MoveNext();
            ++List_Pos;
        }
    }
    if (station_.Web_Run != 1 && List_Row >= 1 && List_Row <= kRows) Row_Pos[List_Row] = List_Pos;
}

void Request::Hide_Rows() {
    for (int row = List_Row; row <= kRows; ++row) {
        Row_Label(row).Visible = false;
        RB(row).Visible = false;
        RD(row).Visible = false;
    }
    MousePointer = 0;
}

}  // namespace tavora
