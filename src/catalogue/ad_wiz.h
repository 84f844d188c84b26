#pragma once

#include "core/forms/form.h"
#include "store/recordset.h"

namespace tavora {

// The auto-load wizard's window: the defaults that every record of one
// folder gets. They are reset to the design values at each load.
class AdWiz : public Form {
  public:
    static constexpr long kLit = 8454016;      // a lit kind button
    static constexpr long kFace = 0x8000000F;  // the system's button colour
    static constexpr long kGreen = 65280;

    AdWiz();

    // Design values; the window becomes visible.
    void Form_Load();
    void Form_Unload();
    // Lights one of `CmdNormal`, `CmdDaily`, `CmdSnipit` and unlights the others.
    void Light(Control& button);
    bool lit(const Control& button) const { return button.BackColor == kLit; }

    // Writes the window's defaults over the pending row, as the add does
    // when the wizard feeds it.
    void apply_to(Recordset& row) const;

    Control& DBCombo1 = add_text("DBCombo1");  // Category
    Control& DBCombo2 = add_text("DBCombo2");  // Type
    Control& DBCombo3 = add_text("DBCombo3");  // Speed
    Control& Combo1 = add_text("Combo1");      // Min Time Between Plays, "hh:mm"
    Control& Combo2 = add_text("Combo2");      // valid start
    Control& Combo4 = add_text("Combo4");      // valid end
    Control& Combo3 = add_text("Combo3");      // valid start 2
    Control& Combo5 = add_text("Combo5");      // valid end 2
    Control& CmdNormal = add("CmdNormal");
    Control& CmdDaily = add("CmdDaily");
    Control& CmdSnipit = add("CmdSnipit");
    Control& Command1 = add("Command1");  // continue: walks the folder
    Control& Command2 = add("Command2");  // cancel: closes the window
    Control& Label1 = add("Label1");      // what the wizard is doing

    Control& txtFields(int index) { return *find("txtFields", index); }
    Control& chkFields(int day) { return *find("chkFields", day); }
    const Control& txtFields(int index) const { return *find("txtFields", index); }
    const Control& chkFields(int day) const { return *find("chkFields", day); }
};

}  // namespace tavora
