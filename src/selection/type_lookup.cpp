#include "selection/type_lookup.h"

#include "platform/path_map.h"
#include "selection/fields.h"

namespace tavora {

namespace {

// Keys below 20 are the master categories, looked up by the web pages.
constexpr double kFirstUserKey = 20;

}  // namespace

frmTypeLookup::frmTypeLookup(Station& station, Services& services, LibraryPool& pool)
    : Form("frmTypeLookup"),
      datPrimaryRS(pool),
      Data1(pool),
      Data2(pool),
      station_(station),
      services_(services) {
    Caption = "Type / Genre Lookup";
    datPrimaryRS.RecordSource = "select * from [Type Lookup] Order by [Type]";
    Data1.RecordSource = "DSearch";
    Data2.RecordSource = "DSearch";
    Label6.Caption =
        "This is a MASTER record and cannot be deleted. Master Geners are used as lookup in your "
        "web pages. PRESS Add to enter a NEW Genre";
    Label6.Visible = false;
    on_click("cmdAdd", [this](int) { cmdAdd_Click(); });
    on_click("cmdDelete", [this](int) { cmdDelete_Click(); });
}

void frmTypeLookup::Form_Initialize() {
    const std::string path = services_.paths.ToNative(station_.Act_Db).path;
    for (DataControl* data : {&datPrimaryRS, &Data1, &Data2}) {
        data->DatabaseName = path;
        data->Refresh();
    }
    sync_weights();
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

void frmTypeLookup::datPrimaryRS_Reposition() {
    add_weight_if_missing(field(datPrimaryRS.Recordset(), 1));
    Chk_TypeLk();
}

void frmTypeLookup::Chk_TypeLk() {
    const bool master = field(datPrimaryRS.Recordset(), 0) < Value(kFirstUserKey);
    cmdDelete.Visible = !master;
    Label6.Visible = master;
    txtType.Enabled = !master;
}

void frmTypeLookup::cmdAdd_Click() {
    Label1.Caption = "Enter a new Category in the Type box";
    datPrimaryRS.Recordset().AddNew();
    cmdDelete.Visible = false;
    Label6.Visible = false;
    txtType.Enabled = true;
}

void frmTypeLookup::cmdDelete_Click() {
    Recordset& types = datPrimaryRS.Recordset();
    types.Delete();
    types.MoveNext();
    if (types.IsEOF()) types.MoveFirst();
}

}  // namespace tavora
