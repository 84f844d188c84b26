#include <algorithm>
#include <cmath>
#include <string>

#include "platform/dialogs.h"
#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "runtime/strings.h"
#include "selection/data_arrows.h"
#include "selection/fields.h"
#include "selection/frm_schedule1.h"

namespace tavora {

namespace {

constexpr const char* kTitle = "Schedule";
constexpr const char* kAlways = "Always";
constexpr long kGrey = 0xC0C0C0;
constexpr long kWhite = 0xFFFFFF;

// The boxes of the form tab and the fields they show.
struct TextBox {
    int index;
    int field;
    bool is_time;
};
constexpr TextBox kTexts[] = {
    {0, sched::Name, false},
    {1, sched::STime, true},
    {2, sched::ETime, true},
    {6, sched::DOM1, false},
};
struct CheckBox {
    int index;
    int field;
};
// 5 is "Active All Month"; 7 to 13 are the days, Monday first.
constexpr CheckBox kChecks[] = {
    {0, sched::Power},   {1, sched::UsePL},   {2, sched::RunNow},  {3, sched::DOWALL},
    {5, sched::DOMALL},  {7, sched::Mo},      {8, sched::Mo + 1},  {9, sched::Mo + 2},
    {10, sched::Mo + 3}, {11, sched::Mo + 4}, {12, sched::Mo + 5}, {13, sched::Su},
};

std::string time_text(const Value& value) {
    return value.is_null() ? "" : Format(value.number(), "hh:mm");
}

}  // namespace

void frmSchedule1::add_editor_controls() {
    for (const TextBox& box : kTexts)
        add_text("txtFields", box.index);
    for (const CheckBox& box : kChecks)
        add_check("chkFields", box.index);
    chkFields(3).Enabled = false;  // "running" is the check's to set
    // The data control's own arrows: first, previous, next, last.
    for (int i = 0; i < 4; ++i)
        add("datPrimaryRS", i);
    on_click("datPrimaryRS", [this](int button) { move(button); });
    add_data("datPrimaryRS", datPrimaryRS, [this] {
        adding_ = false;
        datPrimaryRS_Reposition();
    });
    on_click("cmdAdd", [this](int) { cmdAdd_Click(); });
    on_click("cmdDelete", [this](int) { cmdDelete_Click(); });
    on_click("cmdUpdate", [this](int) { cmdUpdate_Click(); });
    on_click("cmdRefresh", [this](int) { cmdRefresh_Click(); });
    on_click("cmdClose", [this](int) {
        Visible = false;
        Loaded = false;
    });
    on_click("SSTab1", [this](int) { SSTab1_Click(); });
    on_click("chkFields", [this](int index) { chkFields_Click(index); });
    on("UpDown1", "UpClick", [this](int) { UpDown1_Change(1); });
    on("UpDown1", "DownClick", [this](int) { UpDown1_Change(-1); });
    int column = 0;
    for (const char* head : {"Power", "Name", "Type1", "Run Now", "STime", "ETime"})
        add("DataGrid1", column++).Caption = head;
    on_click("DataGrid1", [this](int clicked) { DataGrid1_Click(clicked); });
}

void frmSchedule1::move(int button) {
    press_arrow(datPrimaryRS.Recordset(), button);
    adding_ = false;
    datPrimaryRS_Reposition();
}

bool frmSchedule1::is_always() {
    Recordset& entries = datPrimaryRS.Recordset();
    return !entries.IsEOF() && !entries.IsBOF() && field(entries, sched::Name).text() == kAlways;
}

void frmSchedule1::show_entry() {
    Recordset& entries = datPrimaryRS.Recordset();
    for (const TextBox& box : kTexts) {
        const Value value = field(entries, box.field);
        txtFields(box.index).Text = box.is_time ? time_text(value) : value.text();
    }
    for (const CheckBox& box : kChecks)
        chkFields(box.index).Value = field(entries, box.field).truthy() ? 1 : 0;
    show_category(field(entries, sched::Type1).text());
}

void frmSchedule1::show_category(const std::string& category) {
    DBCombo1.Text = category;
    DBCombo1.ListIndex = -1;
    for (std::size_t i = 0; i < DBCombo1.List.size(); ++i) {
        if (DBCombo1.List[i] == category) DBCombo1.ListIndex = static_cast<int>(i);
    }
}

void frmSchedule1::datPrimaryRS_Reposition() {
    Recordset& entries = datPrimaryRS.Recordset();
    if (entries.IsEOF() || entries.IsBOF()) return;
    show_entry();
    const bool charts = field(entries, sched::UsePL).truthy();
    DBCombo1.Enabled = !charts;
    DBCombo1.BackColor = charts ? kGrey : kWhite;
    // "Always" keeps its name and its row.
    const bool always = is_always();
    txtFields(0).Enabled = !always;
    cmdDelete.Visible = !always && SSTab1.Value == 0;
    txtFields(6).Enabled = !field(entries, sched::DOMALL).truthy();
    chkFields_Click(5);
    datPrimaryRS.Caption = "Record: " + std::to_string(entries.AbsolutePosition() + 1);
}

void frmSchedule1::cmdAdd_Click() {
    datPrimaryRS.Recordset().AddNew();
    adding_ = true;
    for (const TextBox& box : kTexts)
        txtFields(box.index).Text.clear();
    for (const CheckBox& box : kChecks)
        chkFields(box.index).Value = 0;
    // A new entry runs every day, all day, until the operator says more.
    for (int day = 7; day <= 13; ++day)
        chkFields(day).Value = 1;
    chkFields(5).Value = 1;
    txtFields(1).Text = "00:00";
    txtFields(2).Text = "00:00";
    txtFields(0).Enabled = true;
    DBCombo1.Enabled = true;
    DBCombo1.BackColor = kWhite;
    show_category("");
    chkFields_Click(5);
    cmdDelete.Visible = false;
}

void frmSchedule1::cmdDelete_Click() {
    Recordset& entries = datPrimaryRS.Recordset();
    if (adding_ || entries.IsEOF() || entries.IsBOF()) return;
    if (is_always()) {
        services_.dialogs.MsgBox("The Always schedule can't be deleted", Buttons::OKOnly, kTitle,
                                 Icon::Exclamation);
        return;
    }
    entries.Delete();
    entries.MoveNext();
    if (entries.IsEOF()) entries.MoveFirst();
    datPrimaryRS_Reposition();
}

std::string frmSchedule1::check_entry() {
    const std::string name = Trim(txtFields(0).Text);
    if (name.empty()) return "Enter a Name for this schedule";
    // A start after the end is a window across midnight, and entries may
    // overlap: both are the schedule's own rules. Only what can't be read
    // is refused.
    for (int index : {1, 2}) {
        if (!parse_date_text(Trim(txtFields(index).Text)))
            return "Enter the times as hh:mm, from 00:00 to 23:59";
    }
    if (chkFields(5).Value == 0) {
        const std::string day = Trim(txtFields(6).Text);
        if (!IsNumeric(day) || Val(day) < 1 || Val(day) > 31 || Val(day) != CInt(Val(day)))
            return "Enter the Day of the Month, from 1 to 31";
    }
    if (chkFields(1).Value == 0 && Trim(DBCombo1.selected_text()).empty())
        return "Choose a Category for this schedule";
    return "";
}

void frmSchedule1::write_entry() {
    Recordset& entries = datPrimaryRS.Recordset();
    const bool always = !adding_ && is_always();
    if (!entries.is_editing()) entries.Edit();
    if (!always) entries.SetField(sched::Name, Value(Trim(txtFields(0).Text)));
    for (int index : {1, 2}) {
        const double time = *parse_date_text(Trim(txtFields(index).Text));
        entries.SetField(index == 1 ? sched::STime : sched::ETime,
                         Value::date(time - std::floor(time)));
    }
    const std::string day = Trim(txtFields(6).Text);
    if (IsNumeric(day)) entries.SetField(sched::DOM1, Value(CInt(Val(day))));
    for (const CheckBox& box : kChecks) {
        if (box.field != sched::DOWALL)
            entries.SetField(box.field, Value::boolean(chkFields(box.index).Value == 1));
    }
    if (adding_) entries.SetField(sched::DOWALL, Value::boolean(false));
    entries.SetField(sched::Type1, Value(Trim(DBCombo1.selected_text())));
}

void frmSchedule1::cmdUpdate_Click() {
    Recordset& entries = datPrimaryRS.Recordset();
    if (!adding_ && (entries.IsEOF() || entries.IsBOF())) return;
    if (const std::string wrong = check_entry(); !wrong.empty()) {
        services_.dialogs.MsgBox(wrong, Buttons::OKOnly, kTitle, Icon::Exclamation);
        return;
    }
    write_entry();
    if (!datPrimaryRS.UpdateRecord()) {
        services_.dialogs.MsgBox(datPrimaryRS.error(), Buttons::OKOnly, kTitle, Icon::Exclamation);
        return;
    }
    adding_ = false;
    const Value written = entries.LastModified();
    datPrimaryRS.Refresh();
    entries.SetBookmark(written);
    datPrimaryRS_Reposition();
}

void frmSchedule1::cmdRefresh_Click() {
    datPrimaryRS.Recordset().CancelUpdate();
    adding_ = false;
    datPrimaryRS.Refresh();
    datPrimaryRS_Reposition();
}

void frmSchedule1::SSTab1_Click() {
    const bool form_tab = SSTab1.Value == 0;
    cmdAdd.Visible = form_tab;
    cmdDelete.Visible = form_tab && !is_always();
}

void frmSchedule1::chkFields_Click(int index) {
    if (index != 5) return;
    const bool all_month = chkFields(5).Value == 1;
    txtFields(6).Visible = !all_month;
    UpDown1.Visible = !all_month;
}

void frmSchedule1::UpDown1_Change(int step) {
    const std::string day = Trim(txtFields(6).Text);
    const int now = IsNumeric(day) ? CInt(Val(day)) : 1;
    txtFields(6).Text = std::to_string(std::clamp(now + step, 1, 31));
}

void frmSchedule1::DataGrid1_Click(int column) {
    const int target = column == 0 ? sched::Power : column == 3 ? sched::RunNow : -1;
    Recordset& entries = datPrimaryRS.Recordset();
    if (target < 0 || adding_ || entries.IsEOF() || entries.IsBOF()) return;
    const bool on = field(entries, target).truthy();
    entries.Edit();
    entries.SetField(target, Value::boolean(!on));
    entries.Update();
    datPrimaryRS_Reposition();
}

}  // namespace tavora
