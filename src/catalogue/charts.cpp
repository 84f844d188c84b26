#include "catalogue/frm_tavora_db.h"
#include "platform/dialogs.h"

namespace tavora {

void frmTavoraDb::CmdCht_Click(int index) {
    static constexpr const char* kCharts[] = {"T40", "C40", "D40"};
    static constexpr const char* kSet[] = {"Top 40 Set", "AC Set", "Dance Set"};
    switch (index) {
        case 0:
            if (station_.Auto_PL != 1) break;
            station_.Auto_PL = 0;
            services_.dialogs.MsgBox("Auto ReCalc enabled after next song");
            CmdCht0.Visible = false;
            break;
        case 1:
            Cht_Pos = 1;
            break;
        case 2:
            ++Cht_Pos;
            break;
        case 3:
            if (Cht_Pos >= 1) --Cht_Pos;
            break;
        default: {
            if (index > 6) return;
            Recordset& row = Data1.Recordset();
            if (!row.Edit()) return;
            row.SetField(kCharts[index - 4], Value(Cht_Pos));
            row.Update();
            Label7.Caption = kSet[index - 4];
            return;
        }
    }
    Label6.Caption = std::to_string(Cht_Pos);
    Label7.Caption = "Ready";
}

void frmTavoraDb::ClrAll_Click(int index) {
    static constexpr const char* kWhich[] = {"TOP40", "AC", "DANCE"};
    static constexpr const char* kCharts[] = {"T40", "C40", "D40"};
    if (index < 0 || index > 2) return;
    if (services_.dialogs.MsgBox(std::string("This will Clear the ") + kWhich[index] +
                                     " Charts! Do you want to continue ?",
                                 Buttons::YesNo, "Clear Charts", Icon::None, 2) != Answer::Yes) {
        return;
    }
    walk_search([&](Recordset& rows) {
        // An intro's number says which song it leads into: it stays.
        if (!rows.Fields("Source").is_null()) return;
        rows.Edit();
        rows.SetField(kCharts[index], Value(0));
        rows.Update();
    });
    Recordset& shown = Data1.Recordset();
    shown.MoveFirst();
    shown.MoveLast();
    Data1_Reposition();
}

}  // namespace tavora
