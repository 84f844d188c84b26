#include "catalogue/frm_tavora_db.h"
#include "platform/dialogs.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

struct KindButton {
    const char* button;
    const char* title;
    const char* source;
    const char* label;
    const char* lights;  // the button lit afterwards, which is not always its own
    bool intro;          // an intro snipit: off the normal rotation
    bool wait;
};

constexpr KindButton kKindButtons[] = {
    {"CmdDaily", "Set Selection To Timed Promo", "Timed Promo", "Timed Promo", "CmdDaily", false,
     false},
    {"CmdSnipit", "Set Selection To SNIPIT", "Snipit", "Snipit", "CmdSnipit", false, false},
    {"CmdTop40", "Set Selection To TOP 40", "Top40", "Top 40 Intro Snipit", "CmdDaily", true,
     false},
    {"CmdTopCountry", "Set Selection To TOP AC", "TopAC", "Top AC Intro Snipit", "CmdTopCountry",
     true, false},
    {"CmdTopDance", "Set Selection To TOP DANCE", "TopDance", "Top Dance Intro Snipit",
     "CmdTopDance", true, true},
    {"CmdTopRequest", "Set Selection To TOP REQUEST", "TopRequest", "Top Request Intro Snipit",
     "CmdDaily", true, true},
};

std::string question_of(const KindButton& kind) {
    const std::string button = kind.button;
    if (button == "CmdDaily")
        return "This will set this file as a timed promo.  Make sure you set timing for a 15 min "
               "interval. Do you want to continue ?";
    if (button == "CmdSnipit")
        return "This will set this file as a SNIPIT.  The Selection will follow Snipit rules.  "
               "It will NOT appear on the request list. Do you want to continue ?";
    return std::string("This will set this file as a ") + kind.label +
           ".  Enter the chart number of the song it introduces. Do you want to continue ?";
}

}  // namespace

void frmTavoraDb::Convert_Click(const std::string& button) {
    for (const KindButton& kind : kKindButtons) {
        if (button != kind.button) continue;
        if (services_.dialogs.MsgBox(question_of(kind), Buttons::YesNo, kind.title, Icon::None,
                                     2) != Answer::Yes) {
            return;
        }
        if (kind.wait) MousePointer = 11;
        Recordset& row = Data1.Recordset();
        if (!row.Edit()) return;
        row.SetField("Source", Value(kind.source));
        if (kind.intro) Snipit_Clear();
        row.Update();
        LabelSpecial.Caption = kind.label;
        for (Control* other : {&CmdDaily, &CmdNormal, &CmdSnipit, &CmdTop40, &CmdTopCountry,
                               &CmdTopDance, &CmdTopRequest})
            other->BackColor = AdWiz::kFace;
        find(kind.lights)->BackColor = AdWiz::kLit;
        MousePointer = 0;
        return;
    }
}

void frmTavoraDb::Snipit_Clear() {
    Recordset& row = Data1.Recordset();
    for (const char* chart : {"T40", "AM40", "D40", "C40"})
        row.SetField(chart, Value(0));
    for (int day = 23; day <= 29; ++day)
        row.SetField(day, Value::boolean(false));
}

void frmTavoraDb::CmdNormal_Click() {
    Recordset& row = Data1.Recordset();
    if (!row.Edit()) return;
    row.SetField("Source", Value());
    row.Update();
    for (Control* button : {&CmdDaily, &CmdNormal, &CmdSnipit, &CmdTop40, &CmdTopCountry,
                            &CmdTopDance, &CmdTopRequest})
        button->BackColor = AdWiz::kFace;
}

void frmTavoraDb::BtnRand_Click() {
    Recordset& row = Data1.Recordset();
    if (!row.Edit()) return;
    const bool random = Mid(row.Fields("Long title").text(), 5, 4) == "Rand";
    row.SetField("Long title", Value(random ? "QXPL" : "QXPLRand"));
    BtnRand.BackColor = random ? AdWiz::kFace : AdWiz::kGreen;
    row.Update();
}

}  // namespace tavora
