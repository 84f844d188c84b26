#include "selection/type_lookup.h"

#include "platform/dialogs.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/strings.h"
#include "selection/data_arrows.h"
#include "selection/fields.h"

namespace tavora {

namespace {

// Keys below 20 are the master categories, looked up by the web pages.
constexpr double kFirstUserKey = 20;
constexpr const char* kTitle = "Type / Genre Lookup";

// A whole number from low to high, as typed; nothing when it isn't one.
bool whole_in(const std::string& text, double low, double high) {
    const std::string typed = Trim(text);
    if (!IsNumeric(typed)) return false;
    const double n = Val(typed);
    return n == static_cast<double>(static_cast<long>(n)) && n >= low && n <= high;
}

}  // namespace

frmTypeLookup::frmTypeLookup(Station& station, Services& services, LibraryPool& pool)
    : Form("frmTypeLookup"),
      datPrimaryRS(pool),
      Data1(pool),
      Data2(pool),
      station_(station),
      services_(services) {
    Caption = kTitle;
    datPrimaryRS.RecordSource = "select * from [Type Lookup] Order by [Type]";
    Data1.RecordSource = "DSearch";
    Data2.RecordSource = "DSearch";
    Label6.Caption =
        "This is a MASTER record and cannot be deleted. Master Geners are used as lookup in your "
        "web pages. PRESS Add to enter a NEW Genre";
    Label6.Visible = false;
    txtWeight.ToolTipText = "20 = Highest plays";
    txtCount.ToolTipText = "Current Count, Set to 99 to disable";
    // The data control's own arrows: first, previous, next, last.
    for (int i = 0; i < 4; ++i)
        add("datPrimaryRS", i);
    on_click("datPrimaryRS", [this](int button) { move(button); });
    on_click("cmdAdd", [this](int) { cmdAdd_Click(); });
    on_click("cmdUpdate", [this](int) { cmdUpdate_Click(); });
    on_click("cmdDelete", [this](int) { cmdDelete_Click(); });
}

void frmTypeLookup::Form_Initialize() {
    const std::string path = services_.paths.ToNative(station_.Act_Db).path;
    for (DataControl* data : {&datPrimaryRS, &Data1, &Data2}) {
        data->DatabaseName = path;
        data->Refresh();
    }
    sync_weights();
    if (!datPrimaryRS.Recordset().IsEOF()) datPrimaryRS_Reposition();
}

void frmTypeLookup::sync_weights() {
    Recordset& types = datPrimaryRS.Recordset();
    Data2.Refresh();
    Recordset& weights = Data2.Recordset();
    if (types.RecordCount() <= weights.RecordCount()) return;
    const long position = types.AbsolutePosition();
    for (types.MoveFirst(); !types.IsEOF(); types.MoveNext())
        add_weight_if_missing(field(types, 1));
    types.MoveFirst();
    if (position > 0) types.Move(position);
}

void frmTypeLookup::add_weight_if_missing(const Value& type) {
    if (type.is_null()) return;
    Data2.Refresh();
    Recordset& weights = Data2.Recordset();
    for (weights.MoveFirst(); !weights.IsEOF(); weights.MoveNext()) {
        if (field(weights, weight::Category) == type) return;
    }
    weights.AddNew();
    weights.SetField(weight::Category, type);
    weights.SetField(weight::ValidFiles, Value("15"));
    weights.SetField(weight::ExcludeFiles, Value("99"));
    weights.Update();
}

bool frmTypeLookup::find_weight(const std::string& category) {
    Data1.Refresh();
    Recordset& weights = Data1.Recordset();
    for (weights.MoveFirst(); !weights.IsEOF(); weights.MoveNext()) {
        if (field(weights, weight::Category).text() == category) return true;
    }
    return false;
}

void frmTypeLookup::datPrimaryRS_Reposition() {
    Recordset& types = datPrimaryRS.Recordset();
    if (types.IsEOF() || types.IsBOF()) return;
    const Value type = field(types, 1);
    add_weight_if_missing(type);
    txtType.Text = type.text();
    const bool weighted = find_weight(type.text());
    txtWeight.Text = weighted ? field(Data1.Recordset(), weight::ValidFiles).text() : "";
    txtCount.Text = weighted ? field(Data1.Recordset(), weight::ExcludeFiles).text() : "";
    Chk_TypeLk();
}

bool frmTypeLookup::is_master() {
    Recordset& types = datPrimaryRS.Recordset();
    return !types.IsEOF() && field(types, 0) < Value(kFirstUserKey);
}

void frmTypeLookup::Chk_TypeLk() {
    const bool master = is_master();
    cmdDelete.Visible = !master;
    Label6.Visible = master;
    txtType.Enabled = !master;
}

void frmTypeLookup::move(int button) {
    press_arrow(datPrimaryRS.Recordset(), button);
    adding_ = false;
    datPrimaryRS_Reposition();
}

void frmTypeLookup::cmdAdd_Click() {
    Label1.Caption = "Enter a new Category in the Type box";
    datPrimaryRS.Recordset().AddNew();
    adding_ = true;
    cmdDelete.Visible = false;
    Label6.Visible = false;
    txtType.Enabled = true;
    txtType.Text.clear();
    txtWeight.Text = "15";
    txtCount.Text = "99";
}

std::string frmTypeLookup::check_typed(const std::string& type) {
    if (type.empty()) return "Enter a new Category in the Type box";
    if (!whole_in(txtWeight.Text, 1, 20))
        return "The programming weight must be a whole number from 1 to 20 (20 = Highest plays)";
    if (!whole_in(txtCount.Text, 0, 99))
        return "The current count must be a whole number from 0 to 99 (99 disables the weight)";
    // Schedules and recordings name a category exactly: two of one name
    // would share one weight row.
    Recordset others = OpenRecordset(datPrimaryRS.Recordset().library(), "Type Lookup");
    const Value key = adding_ ? Value() : field(datPrimaryRS.Recordset(), 0);
    for (; !others.IsEOF(); others.MoveNext()) {
        if (field(others, 1).text() == type && !(field(others, 0) == key))
            return "The category " + type + " is already on the list";
    }
    return "";
}

void frmTypeLookup::cmdUpdate_Click() {
    Recordset& types = datPrimaryRS.Recordset();
    if (!types.is_editing() && (types.IsEOF() || types.IsBOF())) return;
    // Trailing blanks would make a name no schedule could match.
    const std::string type =
        is_master() && !adding_ ? field(types, 1).text() : RTrim(LTrim(txtType.Text));
    if (const std::string wrong = check_typed(type); !wrong.empty()) {
        services_.dialogs.MsgBox(wrong, Buttons::OKOnly, kTitle, Icon::Exclamation);
        return;
    }
    const std::string old_name = adding_ ? type : field(types, 1).text();
    if (!types.is_editing()) types.Edit();
    types.SetField(1, Value(type));
    if (!datPrimaryRS.UpdateRecord()) {
        services_.dialogs.MsgBox(datPrimaryRS.error(), Buttons::OKOnly, kTitle, Icon::Exclamation);
        return;
    }
    write_weight(old_name, type);
    adding_ = false;
    Label1.Caption.clear();
    datPrimaryRS.Refresh();
    for (types.MoveFirst(); !types.IsEOF(); types.MoveNext()) {
        if (field(types, 1).text() == type) break;
    }
    datPrimaryRS_Reposition();
}

// A renamed category takes its weight row with it.
void frmTypeLookup::write_weight(const std::string& old_name, const std::string& name) {
    Recordset& weights = Data1.Recordset();
    if (find_weight(name) || find_weight(old_name)) {
        weights.Edit();
    } else {
        weights.AddNew();
    }
    weights.SetField(weight::Category, Value(name));
    weights.SetField(weight::ValidFiles, Value(Trim(txtWeight.Text)));
    weights.SetField(weight::ExcludeFiles, Value(Trim(txtCount.Text)));
    weights.Update();
}

void frmTypeLookup::cmdDelete_Click() {
    Recordset& types = datPrimaryRS.Recordset();
    if (types.IsEOF() || types.IsBOF() || adding_) return;
    // The button is hidden on a master row; a click that reaches here
    // anyway is refused with the row's own words.
    if (is_master()) {
        services_.dialogs.MsgBox(Label6.Caption, Buttons::OKOnly, kTitle, Icon::Exclamation);
        return;
    }
    types.Delete();
    types.MoveNext();
    if (types.IsEOF()) types.MoveFirst();
    datPrimaryRS_Reposition();
}

}  // namespace tavora
