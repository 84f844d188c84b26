#include "selection/form2.h"
#include "platform/clock.h"

#include "platform/path_map.h"
#include "runtime/date_text.h"
#include "runtime/strings.h"
#include "selection/fields.h"

namespace tavora {

namespace {

constexpr const char* kLengths[] = {"00:05", "00:10", "00:15", "00:30", "01:00",
                                    "02:00", "04:00", "08:00", "12:00"};

}  // namespace

Form2::Form2(Station& station, Services& services, LibraryPool& pool)
    : Form("Form2"), DataCat(pool), station_(station), services_(services) {
    Caption = "Category Override Setup";
    DataCat.RecordSource = "Schedule";
    for (int i = 0; i < kButtons; ++i)
        add("CmdCat", i).Visible = false;
    for (const char* length : kLengths)
        Combo1.AddItem(length);
    normal_colour_ = Command1.BackColor;
    on_click("CmdCat", [this](int index) { CmdCat_Click(index); });
    on_click("Combo1", [this](int) { Combo1_Click(); });
    on_click("Command1", [this](int) { Command1_Click(); });
    on_click("Command2", [this](int) { Form_Unload(); });
}

void Form2::Form_Load() {
    DataCat.DatabaseName = services_.paths.ToNative(station_.Act_Db).path;
    Combo1.Text = Format(Over_Len, "short time");
    show_state();
    Cat_Chk();
    Loaded = true;
}

void Form2::Form_Unload() {
    Visible = false;
    Loaded = false;
    if (Unloaded) Unloaded();
}

void Form2::show_state() {
    const bool on = station_.Over_On == 1;
    Command1.BackColor = on ? kGreen : normal_colour_;
    Command1.Caption = on ? "Enabled" : "Disabled";
    Text1.Text = date_text(station_.Over_End);
}

// Only 30 entries have a button; later ones are out of reach here.
void Form2::Cat_Chk() {
    for (int i = 0; i < kButtons; ++i)
        CmdCat(i).Visible = false;
    DataCat.Refresh();
    Recordset& entries = DataCat.Recordset();
    entries.MoveLast();
    int i = 0;
    for (entries.MoveFirst(); !entries.IsEOF() && i < kButtons; entries.MoveNext(), ++i) {
        Control& button = CmdCat(i);
        button.Visible = true;
        button.Caption = tavora::Left(field(entries, sched::Name).text(), 16);
        button.BackColor = field(entries, sched::Override) == Value(1) ? kGreen : normal_colour_;
    }
}

void Form2::CmdCat_Click(int index) {
    DataCat.Refresh();
    Recordset& entries = DataCat.Recordset();
    entries.Move(index);
    if (entries.Edit()) {
        entries.SetField(sched::Override,
                         Value(field(entries, sched::Override) == Value(1) ? 0 : 1));
        entries.Update();
    }
    Cat_Chk();
}

void Form2::Combo1_Click() {
    const auto length = parse_date_text(Combo1.selected_text());
    if (!length) return;
    Over_Len = *length;
    station_.Over_End = services_.clock.Now() + Over_Len;
    Text1.Text = date_text(station_.Over_End);
}

void Form2::Command1_Click() {
    station_.Over_On = station_.Over_On == 1 ? 0 : 1;
    show_state();
}

}  // namespace tavora
