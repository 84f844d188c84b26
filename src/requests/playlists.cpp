#include "platform/clock.h"
#include "platform/dialogs.h"
#include "requests/request_form.h"
#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

struct AutoList {
    const char* name;
    const char* chart;  // the chart field the save marks by
    bool timed;         // a timed promo on one day, else left to the defaults
    const char* day;
    int week, month;
    int windows[4][2];  // start 1, end 1, start 2, end 2 as hour and minute
};

// Indexed by Auto_PL - 2. The third row's times are stored in this order
// on purpose: both ends of the first window are 08:00.
constexpr AutoList kAutoLists[] = {
    {"TopRequest", "AM40", false, nullptr, 7, 31, {{9, 0}, {9, 15}, {9, 0}, {9, 15}}},
    {"TopDance", "D40", true, "Valid Saturday", 1, 5, {{10, 0}, {22, 15}, {10, 0}, {22, 15}}},
    {"TopCountry", "C40", true, "Valid Sunday", 1, 5, {{8, 0}, {8, 0}, {8, 15}, {8, 15}}},
    {"Top40 ", "T40", true, "Valid Sunday", 1, 5, {{10, 0}, {22, 15}, {10, 0}, {22, 15}}},
};

constexpr const char* kWindowFields[] = {"Valid Start time", "Valid End Time", "Valid Start Time2",
                                         "Valid End Time2"};
constexpr const char* kDayFields[] = {"Valid Monday",   "Valid Tuesday", "Valid Wednesday",
                                      "Valid Thursday", "Valid Friday",  "Valid Saturday",
                                      "Valid Sunday"};

// The chart position below which the save takes a record into the list.
double chart_limit(int auto_pl, int day_of_month) {
    switch (auto_pl) {
        case 2:
            // The first days of a month carry a longer top request list.
            return day_of_month <= 4 ? 76 : 31;
        case 3:
            return 21;
        default:
            return 41;
    }
}

}  // namespace

void Request::PL_Dispatch(int& index) {
    const int build = station_.PL_Build;
    if (index == 10 && build > 0) index = 11;
    if (index == 11) {
        if (build == 0) {
            index = 10;
        } else if (build == 10) {
            PL_Save();
        } else {
            PL_Edit();
        }
    }
    if (index == 10) PL_Start();
}

void Request::PL_Start() {
    Station& s = station_;
    PL_ScanState = 0;
    if (s.Auto_PL > 1) {
        PL_Answer = 7;
    } else {
        PL_Answer = static_cast<int>(services_.dialogs.MsgBox(
            "YES = NEW Playlist -- NO = EDIT Existing Playlist. -- WARNING! All Open requests "
            "That have not been cued will be removed. Also, The Players will be disabled during "
            "edit",
            Buttons::YesNoCancel, "TQXMS Add/Modify PlayList"));
    }
    if (PL_Answer != static_cast<int>(Answer::Cancel)) {
        viewer_timer(false);
        PL_Scan();
        BtnSrt(11).Caption = "PlyLst Select";
        s.Req_Hold = 1;
        TimerMar->SetEnabled(false);
        for (Control* c : {&Command8, &Command1, &Command10, &Command7, &ReqBrowser1, &Command6})
            c->Visible = false;
        Label17.Caption = s.Auto_PL > 1 ? "Automatic Playlist Mode" : "Playlist Mode is On";
    }
    if (PL_Answer == static_cast<int>(Answer::No)) {
        s.PL_Build = 1;
        PL_Source = datPrimaryRS.RecordSource;
        datPrimaryRS.RecordSource = "PLNames";
        datPrimaryRS.Refresh();
        Label16.Caption = "Select Playlist from list";
        if (s.Auto_PL <= 1) {
            services_.dialogs.MsgBox(
                "Select your playlist name in the Jukebox by requesting it. Then Press the -- "
                "PlyLst Select -- Button To Continue");
        } else if (s.Auto_PL <= 5) {
            PL_AutoName = kAutoLists[s.Auto_PL - 2].name;
            Auto_PL_Hit = 0;
            Recordset& r = rs();
            for (r.MoveFirst(); !r.IsEOF(); r.MoveNext()) {
                if (r.Fields("Title") == Value(PL_AutoName) &&
                    tavora::Left(r.Fields("Long title").text(), 4) == "QXPL" && r.Edit()) {
                    r.SetField("Sel", Value(1));
                    r.Update();
                    Auto_PL_Hit = 1;
                }
            }
            if (Auto_PL_Hit == 0) PL_Answer = static_cast<int>(Answer::Yes);
        }
    }
    if (PL_Answer == static_cast<int>(Answer::Yes)) {
        PL_New();
        PL_Edit();
    }
    if (s.Auto_PL > 1) Auto_PL_Hit = 2;
}

void Request::PL_New() {
    Station& s = station_;
    s.PL_Build = 2;
    const bool automatic = s.Auto_PL > 1 && s.Auto_PL <= 5;
    PL_Name = automatic ? PL_AutoName : services_.dialogs.InputBox("Enter New Playlist name");
    Recordset& r = rs();
    if (!r.AddNew()) return;
    r.SetField("Title", Value(PL_Name));
    r.SetField("Artist", Value("TQXMS PlayList"));
    if (!automatic) {
        r.SetField("Long title", Value("QXPLRandom"));
    } else {
        const AutoList& list = kAutoLists[s.Auto_PL - 2];
        r.SetField("Artist", Value("TQXMS Automatic PlayList"));
        r.SetField("Long title", Value("QXPL"));
        r.SetField("Max Play Day", Value(1));
        if (list.timed) {
            r.SetField("Source", Value("Timed Promo"));
            for (const char* day : kDayFields)
                r.SetField(day, Value::boolean(false));
            r.SetField(list.day, Value::boolean(true));
        }
        r.SetField("Max Play Week", Value(list.week));
        r.SetField("Max Month", Value(list.month));
        for (int w = 0; w < 4; ++w) {
            r.SetField(kWindowFields[w],
                       Value::date(TimeSerial(list.windows[w][0], list.windows[w][1], 0)));
        }
    }
    if (r.Update()) PL_Id = static_cast<long>(r.LastModified().number());
    Label15.Caption = "Playlist: " + PL_Name;
}

void Request::PL_Scan() {
    Recordset& r = rs();
    for (r.MoveFirst(); !r.IsEOF(); r.MoveNext()) {
        // Writing only the rows that hold a request leaves the same library.
        if (PL_ScanState == 0 && !(r.Fields("Sel") == Value(0)) && r.Edit()) {
            r.SetField("Sel", Value(0));
            r.Update();
        }
        if (PL_ScanState == 1 && r.Fields("Sel") > Value(0)) {
            PL_ScanState = 2;
            PL_Name = r.Fields("Title").text();
            PL_Id = static_cast<long>(r.Fields("RecID").number());
            if (!r.Edit()) continue;
            const double sel = r.Fields("Sel").number();
            if (station_.Auto_PL < 2) {
                // Takes back the press that picked the marker.
                for (const char* name : {"RTW", "Request This Month", "Request AllTime"})
                    r.SetField(name, Value(r.Fields(name).number() - sel));
            }
            r.SetField("Sel", Value(0));
            r.Update();
            Label15.Caption = "Playlist: " + PL_Name;
        }
    }
}

void Request::PL_Edit() {
    Station& s = station_;
    MousePointer = 11;
    BtnSrt(11).Caption = "Save Playlist";
    BtnSrt(10).Visible = false;
    PL_ScanState = 1;
    PL_Scan();
    if (s.Auto_PL < 2) {
        services_.dialogs.MsgBox(
            "Now, Press The Request Button - IN ORDER - for all of the selections on this "
            "playlist -- Note: The list is sorted by Descending Playlist Order then by Selection "
            "Titles. Selecting A title will move it to the top of the list.");
    }
    s.PL_Build = 10;
    s.PL_Next = 1;
    datPrimaryRS.RecordSource = s.Auto_PL > 1 ? "Top40" : "Title Sort";
    datPrimaryRS.Refresh();
    if (s.Auto_PL > 1) return;

    Label16.Caption = "Sorted By PlayList Then Title";
    Recordset& r = rs();
    DataPL.Refresh();
    Recordset& members = DataPL.Recordset();
    for (members.MoveFirst(); !members.IsEOF(); members.MoveNext()) {
        if (!(members.Fields(2) == Value(PL_Id))) continue;
        const Value member = members.Fields(1);
        const Value order = members.Fields(6);
        for (r.MoveFirst(); !r.IsEOF(); r.MoveNext()) {
            if (!(r.Fields("RecID") == member)) continue;
            if (r.Edit()) {
                r.SetField("Sel", order);
                if (r.Fields("Sel").number() > s.PL_Next)
                    s.PL_Next = static_cast<int>(r.Fields("Sel").number()) + 1;
                r.Update();
            }
            break;
        }
    }
    datPrimaryRS.RecordSource = "CRequest";
    datPrimaryRS.Refresh();
    show_letters(false);
    MousePointer = 0;
}

void Request::PL_Save() {
    Station& s = station_;
    MousePointer = 11;
    DataPL.Refresh();
    // One commit for the list's rows and the requests it clears, instead of
    // one synchronous write per row.
    if (const std::shared_ptr<Library> library = DataPL.Recordset().library()) {
        Transaction batch = library->transaction();
        save_list_rows();
        batch.commit();
    } else {
        save_list_rows();
    }
    PL_Done();
    MousePointer = 0;
    if (s.Auto_PL < 2) {
        services_.dialogs.MsgBox(
            "Thankyou! Your List Is Saved! You Can Edit its' Play schedule and frequency in the "
            "Program director");
    }
}

void Request::save_list_rows() {
    Station& s = station_;
    Recordset& members = DataPL.Recordset();
    for (members.MoveFirst(); !members.IsEOF(); members.MoveNext()) {
        if (members.Fields(2) == Value(PL_Id)) members.Delete();
    }
    const int day = static_cast<int>(Val(Format(services_.clock.Now(), "dd")));
    Recordset& r = rs();
    for (r.MoveFirst(); !r.IsEOF(); r.MoveNext()) {
        if (null_or_empty(r.Fields("Source")) && s.Auto_PL > 1 && s.Auto_PL <= 5) {
            const Value place = r.Fields(kAutoLists[s.Auto_PL - 2].chart);
            if (place > Value(0) && place < Value(chart_limit(s.Auto_PL, day)) && r.Edit()) {
                r.SetField("Sel", Value(1000 + place.number()));
                r.Update();
                PL_Marked = 1;
            }
        }
        const Value sel = r.Fields("Sel");
        if (sel > Value(0) && members.AddNew()) {
            const Value id = r.Fields("RecID");
            members.SetField(1, id);
            members.SetField(2, Value(PL_Id));
            members.SetField(3, Value(id.text() + "-" + Str(static_cast<double>(PL_Id))));
            // The list value column holds numbers, so a name is refused there.
            members.SetField(4, Value(PL_Name));
            members.SetField(6, sel);
            members.Update();
            if (r.Edit()) {
                r.SetField("Sel", Value(0));
                r.Update();
            }
        }
    }
}

void Request::PL_Done() {
    Station& s = station_;
    PL_ScanState = 0;
    s.PL_Build = 0;
    Label15.Caption = "Select A Song";
    Label16.Caption = "Sorted By Title";
    Command6.Visible = true;
    Label17.Caption = "Tavora Music System";
    s.Req_Hold = 0;
    BtnSrt(11).Caption = "Playlist";
    BtnSrt(10).Visible = true;
    TimerMar->SetEnabled(true);
    for (Control* c : {&Command8, &Command1, &Command10, &Command7})
        c->Visible = true;
    if (ReqBrowser1.Tag == "1") ReqBrowser1.Visible = true;
    viewer_timer(true);
}

}  // namespace tavora
