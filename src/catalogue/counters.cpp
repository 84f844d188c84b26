#include "catalogue/frm_tavora_db.h"
#include "platform/dialogs.h"

namespace tavora {

namespace {

struct CounterChoice {
    bool weekly = false, monthly = false, all_time = false, plays = false;
};

CounterChoice ask_counters(Dialogs& dialogs) {
    const auto yes = [&dialogs](const char* question) {
        return dialogs.MsgBox(question, Buttons::YesNo) == Answer::Yes;
    };
    CounterChoice choice;
    choice.weekly = yes("Clear Weekly counters?");
    choice.monthly = yes("Clear Monthly counters?");
    choice.all_time = yes("Clear All Time Request counters?");
    choice.plays = yes("Clear Total Plays counter?");
    return choice;
}

// Each counter takes the next shorter one, after that one was cleared: the
// order is the rule.
void clear_counters(Recordset& row, const CounterChoice& choice) {
    if (choice.weekly) {
        row.SetField("RTW", Value(0));
        row.SetField("Week1 Requests", Value(0));
    }
    if (choice.monthly) {
        row.SetField("Request This Month", row.Fields("RTW"));
        row.SetField("Week2 Requests", row.Fields("Week1 Requests"));
        row.SetField("Week3 Requests", Value(0));
        row.SetField("Week4 Requests", Value(0));
    }
    if (choice.all_time) row.SetField("Request AllTime", row.Fields("Request This Month"));
    if (choice.plays) row.SetField("Total Request", Value(0));
}

}  // namespace

void frmTavoraDb::Command8_Click(int index) {
    Dialogs& dialogs = services_.dialogs;
    CounterChoice choice;
    int open_to = -1;  // what open requests become; -1 leaves them
    if (index == 0) {
        if (dialogs.MsgBox("Warning! This will the Weekly, Monthly and All Time counters for "
                           "requests! Are you sure you want to continue?",
                           Buttons::YesNo) != Answer::Yes) {
            return;
        }
        choice = ask_counters(dialogs);
    } else {
        const std::string count = index == 1 ? "0" : "1";
        if (dialogs.MsgBox("Clear All current OPEN requests to a count of " + count +
                               "? -- Note: this clears the open counter but, still counts the "
                               "original requests",
                           Buttons::YesNo) != Answer::Yes) {
            return;
        }
        open_to = index == 1 ? 0 : 1;
    }
    walk_search([&](Recordset& rows) {
        if (!rows.Edit()) return;
        clear_counters(rows, choice);
        const double sel = rows.Fields("Sel").number();
        // Playlist members in cue (1000 and up) keep their mark.
        if (open_to >= 0 && sel > open_to && sel < 1000) rows.SetField("Sel", Value(open_to));
        rows.Update();
    });
    Data1.Refresh();
    dialogs.MsgBox("Completed!");
}

void frmTavoraDb::ClrReq_Click() {
    Dialogs& dialogs = services_.dialogs;
    if (dialogs.MsgBox("This will clear request history for this record! Are you sure you want "
                       "to continue?",
                       Buttons::YesNo) != Answer::Yes) {
        return;
    }
    const CounterChoice choice = ask_counters(dialogs);
    Recordset& row = Data1.Recordset();
    if (row.Edit()) {
        clear_counters(row, choice);
        for (const char* week :
             {"Week1 Requests", "Week2 Requests", "Week3 Requests", "Week4 Requests"})
            row.SetField(week, Value(0));
        row.Update();
    }
    dialogs.MsgBox(
        "Completed! Note: Go to Category Setup screen to remove all requests at one time");
}

}  // namespace tavora
