#include "catalogue/frm_tavora_db.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "runtime/date_text.h"
#include "runtime/strings.h"
#include "selection/query_screen.h"

namespace tavora {

namespace {

struct SortButton {
    const char* name;
    const char* caption;
    const char* tag;
    bool letters;  // the letter steps make sense in this order
};

constexpr SortButton kSorts[] = {
    {"SortTitle", "Title", "Title Sort", true},
    {"SortArtist", "Artist", "Artist Sort", true},
    {"SortNone", "None", "Recordings1", false},
    {"SortRequest", "Request", "RequestThisMonth", false},
    {"SortSpecial", "Special", "Special", true},
    {"SortTop40", "Charts", "Charts", false},
    {"SortTopCountry", "Most Plays", "Most Plays", false},
    {"SortTopDance", "Categories", "Categories", true},
    {"Command4", "Max Plays", "MaxPlys", true},
    {"Command5", "File Name", "FName", false},
    {"Command6", "Sort By Last Play", "LastPlay", false},
};

struct Preset {
    int day, week, month;
};
constexpr Preset kPresets[] = {{2, 14, 56}, {2, 7, 30}, {1, 5, 20}, {2, 3, 10}, {1, 1, 5}};

std::string first_letter(Recordset& rows, const char* field) {
    return LCase(tavora::Left(rows.Fields(field).text(), 1));
}

}  // namespace

void frmTavoraDb::Data1_Reposition() {
    Recordset& row = Data1.Recordset();
    const std::string path = row.Fields("Long title").text();
    if (tab() == 4 && refused_for_preview(path)) show_tab(2);
    BtnRand.Visible = tavora::Left(path, 4) == "QXPL";
    BtnRand.BackColor = Mid(path, 5, 4) == "Rand" ? AdWiz::kGreen : AdWiz::kFace;
    cmdRefresh.Visible = tavora::Left(path, 2) != "CD";
    Data1Caption.Caption = "Record: " + std::to_string(row.AbsolutePosition() + 1);
    find("txtLength")->Text = Format(row.Fields("Length").number(), "hh:mm:ss");
    find("Combo1")->Text = Format(row.Fields("Min Time Between Plays").number(), "hh:mm");

    light_sort_button();
    light_kind();
    if (hooks.viewer_loaded && hooks.viewer_loaded())
        LblStatus.Caption = "You Shouldn't do this When JukeBox Is Running";
    if (Clone_On == 1) {
        const bool master = row.Bookmark().same(clone_master_);
        CommandClone.Caption = master ? "Master Record" : "Clone";
        Command2.Visible = !master;
    }
    if (tab() == 4) open_in_preview();
}

void frmTavoraDb::light_sort_button() {
    const std::string& source = Data1.Recordset().source();
    bool letters = false;
    for (const SortButton& sort : kSorts) {
        const bool current = Data1.Tag == sort.tag || source == sort.tag;
        find(sort.name)->BackColor = current ? AdWiz::kLit : AdWiz::kFace;
        letters = letters || (current && sort.letters);
    }
    PrevLtr.Visible = letters;
    NextLtr.Visible = letters;
}

void frmTavoraDb::light_kind() {
    for (Control* button : {&CmdDaily, &CmdNormal, &CmdSnipit, &CmdTop40, &CmdTopCountry,
                            &CmdTopDance, &CmdTopRequest, &ChartBox})
        button->BackColor = AdWiz::kFace;
    Recordset& row = Data1.Recordset();
    const Value& source = row.Fields("Source");
    LabelSpecial.ToolTipText.clear();
    if (source.is_null()) {
        CmdNormal.BackColor = AdWiz::kLit;
        LabelSpecial.Caption.clear();
        bool charted = false;
        for (const char* chart : {"T40", "C40", "D40", "AM40"})
            charted = charted || row.Fields(chart).number() > 0;
        if (charted && station_.Power_On == 1) {
            LabelSpecial.Caption = "2X Play Is Active";
            LabelSpecial.ToolTipText = " This is a Charted Song, It Will Be Played Twice as Much";
        }
        return;
    }
    const std::string kind = source.text();
    LabelSpecial.Caption = kind;
    const std::pair<const char*, Control*> kinds[] = {
        {"Snipit", &CmdSnipit},    {"Top40", &CmdTop40},           {"TopDance", &CmdTopDance},
        {"TopAC", &CmdTopCountry}, {"TopRequest", &CmdTopRequest}, {"Timed Promo", &CmdDaily},
    };
    for (const auto& [name, button] : kinds) {
        if (kind != name) continue;
        button->BackColor = AdWiz::kLit;
        if (tavora::Left(kind, 3) == "Top") ChartBox.BackColor = AdWiz::kLit;
    }
}

void frmTavoraDb::cmdNext_Click() {
    Recordset& rows = Data1.Recordset();
    rows.MoveNext();
    if (rows.IsEOF()) rows.MoveFirst();
    Data1_Reposition();
}

void frmTavoraDb::CmdPrev_Click() {
    Recordset& rows = Data1.Recordset();
    rows.MovePrevious();
    if (rows.IsBOF()) rows.MoveFirst();
    Data1_Reposition();
}

void frmTavoraDb::NextLtr_Click() {
    Recordset& rows = Data1.Recordset();
    const char* field = Data1.Tag == "Artist Sort" ? "Artist" : "Title";
    const long start = rows.AbsolutePosition();
    const std::string letter = first_letter(rows, field);
    for (rows.MoveNext(); !rows.IsEOF(); rows.MoveNext()) {
        if (first_letter(rows, field) > letter) return Data1_Reposition();
    }
    // Past the last letter the step wraps to the first group.
    rows.MoveFirst();
    if (rows.AbsolutePosition() == start) return;
    Data1_Reposition();
}

void frmTavoraDb::PrevLtr_Click() {
    Recordset& rows = Data1.Recordset();
    const char* field = Data1.Tag == "Artist Sort" ? "Artist" : "Title";
    const std::string letter = first_letter(rows, field);
    rows.MovePrevious();
    while (!rows.IsBOF() && first_letter(rows, field) >= letter)
        rows.MovePrevious();
    if (rows.IsBOF()) rows.MoveLast();  // none above: the last group
    const std::string group = first_letter(rows, field);
    for (rows.MovePrevious(); !rows.IsBOF(); rows.MovePrevious()) {
        if (first_letter(rows, field) != group) break;
    }
    rows.MoveNext();
    if (rows.IsEOF()) rows.MoveFirst();
    Data1_Reposition();
}

void frmTavoraDb::Sort_Click(const std::string& button) {
    for (const SortButton& sort : kSorts) {
        if (button != sort.name) continue;
        Data1.Tag = sort.tag;
        if (button == "SortArtist") {
            DataSearch.RecordSource = "Artist Sort";
            DataSearch.Refresh();
        }
        if (auto data = library()) GetQryScrn(Data1, data, *this);
        Data1_Reposition();
        return;
    }
}

void frmTavoraDb::search_by(const std::string& field) {
    const bool titles = field == "Title";
    DFrame.Visible = false;
    Label10.Visible = true;
    DBComboTitleSrch.Visible = titles;
    DBComboArtistSearch.Visible = !titles;
    MousePointer = 11;
    const std::string source = titles ? "Title Sort" : "Artist Sort";
    for (DataControl* data : {&Data1, &DataSearch}) {
        data->RecordSource = source;
        data->Refresh();
        data->Recordset().MoveLast();
    }
    MousePointer = 0;
    Data1_Reposition();
}

void frmTavoraDb::Search_Change(const std::string& field, const std::string& text) {
    if (text.empty()) return;
    Recordset& rows = DataSearch.Recordset();
    const Value wanted(text);
    for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext()) {
        if (!(rows.Fields(field) == wanted)) continue;
        Recordset& shown = Data1.Recordset();
        shown.MoveFirst();
        shown.Move(rows.AbsolutePosition());
        DBComboTitleSrch.Visible = false;
        DBComboArtistSearch.Visible = false;
        Label10.Visible = false;
        MousePointer = 0;
        return Data1_Reposition();
    }
    MousePointer = 0;
}

void frmTavoraDb::cmdUpdate_Click() {
    Data1.UpdateRecord();
    Recordset& row = Data1.Recordset();
    row.SetBookmark(row.LastModified());
    Data1_Reposition();
}

void frmTavoraDb::cmdDelete_Click() {
    Recordset& rows = Data1.Recordset();
    if (rows.RecordCount() <= 1) return;
    if (services_.dialogs.MsgBox("Are you sure you want to delete this record from your database? ",
                                 Buttons::YesNo, "Record Deletion") != Answer::Yes) {
        return;
    }
    if (station_.Run_Mode != 1 &&
        services_.dialogs.MsgBox("Do you want to KEEP this FILE on your computer? ",
                                 Buttons::YesNo) == Answer::No) {
        files::Kill(native(rows.Fields("Long title").text()));
    }
    rows.Delete();
    rows.MoveNext();
    if (rows.IsEOF()) rows.MoveFirst();
    Data1_Reposition();
}

void frmTavoraDb::CommandClone_Click() {
    Clone_On = 1;
    Recordset& row = Data1.Recordset();
    row.Edit();
    row.Update();
    clone_master_ = row.Bookmark();
    DataSearch.RecordSource = row.source();
    DataSearch.Refresh();
    Recordset& master = DataSearch.Recordset();
    master.MoveFirst();
    master.Move(row.AbsolutePosition());
    CommandClone.BackColor = AdWiz::kLit;
    Data1_Reposition();
}

void frmTavoraDb::Command2_Click() {
    if (Clone_On != 1) return;
    Recordset& row = Data1.Recordset();
    if (!row.Edit()) return;
    copy_clone_settings(row);
    row.Update();
    Data1_Reposition();
}

void frmTavoraDb::CmdFindClone_Click() {
    Data1.Refresh();
    Data1.Recordset().SetBookmark(clone_master_);
    Data1_Reposition();
}

void frmTavoraDb::CmpPst_Click(int index) {
    Recordset& row = Data1.Recordset();
    if (index == 6) {
        Pre_Day = static_cast<int>(row.Fields("Max Play Day").number());
        Pre_Week = static_cast<int>(row.Fields("Max Play Week").number());
        Pre_Month = static_cast<int>(row.Fields("Max Month").number());
        return;
    }
    const Preset preset = index == 5 ? Preset{Pre_Day, Pre_Week, Pre_Month} : kPresets[index];
    if (!row.Edit()) return;
    row.SetField("Max Play Day", Value(preset.day));
    row.SetField("Max Play Week", Value(preset.week));
    row.SetField("Max Month", Value(preset.month));
    row.Update();
}

void frmTavoraDb::Command7_Click() {
    Recordset& row = Data1.Recordset();
    if (!row.Edit()) return;
    row.SetField("Size", Value(txtFields(9).Text));
    row.SetField("Mix Out", Value(txtFields(18).Text));
    row.Update();
}

}  // namespace tavora
