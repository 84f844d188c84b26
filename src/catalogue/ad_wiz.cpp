#include "catalogue/ad_wiz.h"

#include "runtime/date_text.h"

namespace tavora {

namespace {

// A time box's text as a time of day; an unreadable one leaves the field as
// the record has it.
void set_time(Recordset& row, int ordinal, const std::string& text) {
    if (const auto time = parse_date_text(text)) row.SetField(ordinal, Value::date(*time));
}

void set_number(Recordset& row, int ordinal, const std::string& text) {
    if (!text.empty()) row.SetField(ordinal, Value(text));
}

}  // namespace

AdWiz::AdWiz() : Form("AdWiz") {
    Caption = "Auto Add Wizard";
    for (int index : {9, 18, 19, 21, 23})
        add_text("txtFields", index);
    for (int day = 0; day <= 6; ++day)
        add_check("chkFields", day);
    Command1.Caption = "Continue Adding Selections";
    Command2.Caption = "Cancel Auto Load";
    CmdNormal.Caption = "Normal";
    CmdDaily.Caption = "Daily";
    CmdSnipit.Caption = "Snipit";
    on_click("CmdNormal", [this](int) { Light(CmdNormal); });
    on_click("CmdDaily", [this](int) { Light(CmdDaily); });
    on_click("CmdSnipit", [this](int) { Light(CmdSnipit); });
    on_click("Command2", [this](int) { Form_Unload(); });
}

void AdWiz::Form_Load() {
    DBCombo1.Text = "Always";
    DBCombo2.Text.clear();
    DBCombo3.Text.clear();
    txtFields(23).Text = "1";
    txtFields(21).Text = "5";
    txtFields(19).Text = "20";
    txtFields(9).Text = "6";
    txtFields(18).Text = "6";
    Combo1.Text = "04:00";
    Combo2.Text = "12:00:00 AM";
    Combo3.Text = "12:00:00 AM";
    Combo4.Text = "11:59:59 PM";
    Combo5.Text = "11:59:59 PM";
    // Every day valid, so that a new record can play at all.
    for (int day = 0; day <= 6; ++day)
        chkFields(day).Value = 1;
    Command1.Visible = true;
    Label1.Caption.clear();
    Light(CmdNormal);
    Loaded = true;
    Visible = true;
}

void AdWiz::Form_Unload() {
    Visible = false;
    Loaded = false;
}

void AdWiz::Light(Control& button) {
    for (Control* kind : {&CmdNormal, &CmdDaily, &CmdSnipit})
        kind->BackColor = kind == &button ? kLit : kFace;
}

void AdWiz::apply_to(Recordset& row) const {
    const auto text_if_any = [&row](const char* field, const Control& box) {
        if (!box.Text.empty()) row.SetField(field, Value(box.Text));
    };
    text_if_any("Category", DBCombo1);
    text_if_any("Type", DBCombo2);
    text_if_any("Speed", DBCombo3);
    set_time(row, 11, Combo1.Text);
    set_number(row, 13, txtFields(23).Text);
    set_number(row, 15, txtFields(21).Text);
    set_number(row, 17, txtFields(19).Text);
    set_time(row, 19, Combo2.Text);
    set_time(row, 20, Combo4.Text);
    set_time(row, 21, Combo3.Text);
    set_time(row, 22, Combo5.Text);
    for (int day = 0; day <= 6; ++day)
        row.SetField(23 + day, Value::boolean(chkFields(day).Value == 1));
    if (lit(CmdDaily)) row.SetField("Source", Value("Timed Promo"));
    if (lit(CmdSnipit)) row.SetField("Source", Value("Snipit"));
    set_number(row, 37, txtFields(9).Text);
    set_number(row, 40, txtFields(18).Text);
}

}  // namespace tavora
