#include <algorithm>

#include "platform/dialogs.h"
#include "requests/request_form.h"
#include "runtime/convert.h"

namespace tavora {

namespace {

constexpr const char* kCounters[] = {"Sel", "RTW", "Request This Month", "Request AllTime"};

double field(Recordset& r, const char* name) {
    return r.Fields(name).number();
}

void add_to(Recordset& r, const char* name, double amount) {
    r.SetField(name, Value(field(r, name) + amount));
}

}  // namespace

void Request::RB_Click(int index) {
    Row_Hit = index;
    Req_Add();
}

void Request::RD_Click(int index) {
    Row_Hit = index;
    Req_Drop();
}

void Request::Req_Add() {
    if (Row_Hit < 1 || Row_Hit > kRows) return;
    Recordset& r = rs();
    if (!go_to(Row_Pos[Row_Hit]) || !r.Edit()) return;
    for (const char* name : kCounters)
        add_to(r, name, 1);
    if (station_.PL_Build == 10) {
        if (field(r, "Sel") > 1) r.SetField("Sel", Value(1));
        for (const char* name : kCounters)
            add_to(r, name, station_.PL_Next - 1);
        ++station_.PL_Next;
    }
    r.Update();
    Show_Page();
}

void Request::Req_Drop() {
    if (Row_Hit < 1 || Row_Hit > kRows) return;
    Recordset& r = rs();
    if (!go_to(Row_Pos[Row_Hit]) || !r.Edit()) return;
    if (r.Fields("Sel") > Value(0)) {
        if (field(r, "Sel") < 1000) {
            for (const char* name : kCounters)
                add_to(r, name, -1);
        }
        const double sel = field(r, "Sel");
        if (station_.PL_Build == 10 && field(r, "RTW") - sel >= 0) {
            for (const char* name : {"RTW", "Request This Month", "Request AllTime"})
                add_to(r, name, -sel);
            r.SetField("Sel", Value(0));
            station_.PL_Next = std::max(1, station_.PL_Next - 1);
            const std::string answer = services_.dialogs.InputBox(
                "Enter the number to Continue The Count From.  Or Press Cancel to Clear this "
                "selection",
                {}, std::to_string(station_.PL_Next));
            // A cancel or a text that isn't a number starts the count again.
            station_.PL_Next = std::max(1, CInt(Val(answer)));
        }
    } else {
        r.SetField("Sel", Value(0));
    }
    r.Update();
    Show_Page();
}

void Request::Command8_Click() {
    if (station_.Req_Hold == 0) {
        station_.Req_Hold = 1;
        Command8.BackColor = kYellow;
    } else {
        station_.Req_Hold = 0;
        Command8.BackColor = kButtonFace;
    }
}

}  // namespace tavora
