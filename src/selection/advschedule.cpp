#include "selection/advschedule.h"

#include "platform/dialogs.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/strings.h"
#include "selection/fields.h"

namespace tavora {

namespace {

constexpr const char* kTitle = "Advanced Scheduler";

struct Chart {
    const char* tag;
    const char* field;
    int ordinal;
};
constexpr Chart kCharts[] = {
    {"Top40", "T40", rec::T40},
    {"HOT AC", "C40", rec::C40},
    {"Dance", "D40", rec::D40},
};
constexpr const char* kCaptions[] = {"Set T40",   "Set AC",   "Set Dance",
                                     "Final T40", "Final AC", "Final Dance"};

std::string chart_source(const Chart& chart) {
    return std::string("SELECT * from Recordings1 where Recordings1.[Source] = null ") +
           "ORDER BY Recordings1.[" + chart.field + "]DESC, Recordings1.[Title]";
}

}  // namespace

Advschedule::Advschedule(Station& station, Services& services, LibraryPool& pool)
    : Form("Advschedule"), datPrimaryRS(pool), station_(station), services_(services) {
    Caption = kTitle;
    for (int i = 0; i < 6; ++i)
        add("SetAll", i).Caption = kCaptions[i];
    int column = 0;
    for (const char* head : {"T40", "C40", "D40", "Title", "Artist"})
        add("DataGrid1", column++).Caption = head;
    on_click("SetAll", [this](int index) { SetAll_Click(index); });
    on("DataGrid1", "HeadClick", [this](int head) { DataGrid1_HeadClick(head); });
    // A cell typed into leaves its text on the column.
    on("DataGrid1", "Change", [this](int typed) { DataGrid1_Edit(typed, DataGrid1(typed).Text); });
    add_data("datPrimaryRS", datPrimaryRS);
    on_click("cmdAdd", [this](int) { cmdAdd_Click(); });
    on_click("cmdDelete", [this](int) { cmdDelete_Click(); });
    on_click("cmdRefresh", [this](int) { cmdRefresh_Click(); });
    on_click("cmdUpdate", [this](int) { cmdUpdate_Click(); });
    on_click("cmdClose", [this](int) {
        datPrimaryRS.Recordset().CancelUpdate();
        Visible = false;
        Loaded = false;
    });
}

void Advschedule::Form_Load() {
    datPrimaryRS.DatabaseName = services_.paths.ToNative(station_.Act_Db).path;
    datPrimaryRS.RecordSource = "Recordings1";
    datPrimaryRS.Refresh();
    cmdAdd.Visible = false;
    cmdDelete.Visible = false;
    Loaded = true;
    Set_n_Sort();
}

void Advschedule::Set_n_Sort() {
    datPrimaryRS.Tag = "Top40";
    view();
}

void Advschedule::view() {
    const std::string& tag = datPrimaryRS.Tag;
    if (tag == "Title" || tag == "Artist") datPrimaryRS.RecordSource = tag + " Sort";
    for (const Chart& chart : kCharts) {
        if (tag == chart.tag) datPrimaryRS.RecordSource = chart_source(chart);
    }
    datPrimaryRS.Refresh();
    Recordset& rows = datPrimaryRS.Recordset();
    if (rows.RecordCount() == 0) {
        services_.dialogs.MsgBox("No records found for " + tag, Buttons::OKOnly, kTitle);
        datPrimaryRS.RecordSource = "Title Sort";
        datPrimaryRS.Tag = "Title Sort";
        datPrimaryRS.Refresh();
    }
    rows.MoveLast();
    rows.MoveFirst();
}

void Advschedule::SetAll_Click(int index) {
    if (index < 0 || index > 5) return;
    const Chart& chart = kCharts[index % 3];
    const bool final = index >= 3;
    datPrimaryRS.RecordSource =
        "SELECT * from Recordings1 where (Recordings1.[Source] = null and (Recordings1.[C40] >0 "
        "or Recordings1.[D40] >0 or Recordings1.[T40] >0)) ";
    MousePointer = 11;
    datPrimaryRS.Refresh();
    Recordset& rows = datPrimaryRS.Recordset();
    rows.MoveLast();
    rows.MoveFirst();
    for (; !rows.IsEOF(); rows.MoveNext()) {
        rows.Edit();
        // Lead clips have a Source and keep their fixed places.
        if (field(rows, rec::Source).is_null()) {
            const double place = field(rows, chart.ordinal).number();
            if (!final && place > 0) rows.SetField(chart.ordinal, Value(kPlaceHolder));
            if (final && place == kPlaceHolder) rows.SetField(chart.ordinal, Value(0));
        }
        rows.Update();
    }
    MousePointer = 0;
    rows.MoveFirst();
    datPrimaryRS.Tag = chart.tag;
    view();
}

void Advschedule::DataGrid1_HeadClick(int column) {
    static constexpr const char* kViews[] = {"Top40", "HOT AC", "Dance", "Title", "Artist"};
    if (column < 0 || column > 4) return;
    datPrimaryRS.Recordset().CancelUpdate();
    datPrimaryRS.Tag = kViews[column];
    view();
}

void Advschedule::DataGrid1_Edit(int column, const std::string& text) {
    Recordset& rows = datPrimaryRS.Recordset();
    if (column < 0 || column > 2 || rows.IsEOF() || rows.IsBOF()) return;
    const std::string typed = Trim(text);
    // A place is a whole number; 0 takes the row off the chart.
    if (!IsNumeric(typed) || Val(typed) < 0 || Val(typed) != CInt(Val(typed))) {
        services_.dialogs.MsgBox("Enter a chart position from 0 to " + std::to_string(kPlaceHolder),
                                 Buttons::OKOnly, kTitle, Icon::Exclamation);
        return;
    }
    if (!rows.is_editing()) rows.Edit();
    rows.SetField(kCharts[column].ordinal, Value(CInt(Val(typed))));
}

void Advschedule::cmdAdd_Click() {
    datPrimaryRS.Recordset().AddNew();
}

void Advschedule::cmdDelete_Click() {
    Recordset& rows = datPrimaryRS.Recordset();
    if (rows.IsEOF() || rows.IsBOF()) return;
    rows.Delete();
    rows.MoveNext();
    if (rows.IsEOF()) rows.MoveFirst();
}

void Advschedule::cmdRefresh_Click() {
    datPrimaryRS.Recordset().CancelUpdate();
    datPrimaryRS.Refresh();
}

void Advschedule::cmdUpdate_Click() {
    if (!datPrimaryRS.UpdateRecord())
        services_.dialogs.MsgBox(datPrimaryRS.error(), Buttons::OKOnly, kTitle, Icon::Exclamation);
}

}  // namespace tavora
