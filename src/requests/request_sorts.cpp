#include <algorithm>
#include <unordered_map>

#include "platform/dialogs.h"
#include "requests/request_form.h"
#include "runtime/text_order.h"
#include "store/statement.h"

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

// The place of a field's first character in the letter order; 0 for Null
// or empty.
std::uint32_t first_order(const Value& v) {
    return v.is_null() ? 0 : first_char_order(v.text());
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

const std::vector<std::uint32_t>& Request::letters() {
    Recordset& r = rs();
    const std::uint64_t generation = r.library() ? r.library()->generation() : 0;
    LetterCache& cache = letter_cache_;
    if (cache.source == datPrimaryRS.RecordSource && cache.field == Sort_Field &&
        cache.generation == generation && cache.generation != 0 &&
        static_cast<long>(cache.first.size()) == r.RecordCount()) {
        return cache.first;
    }
    cache.first.clear();
    cache.first.reserve(static_cast<std::size_t>(r.RecordCount()));
    // Every list is a sort of Recordings1: one pass over the table by row
    // key, then the list's order from its keys, costs far less than reading
    // the field row by row in the list's order.
    std::unordered_map<long long, std::uint32_t> by_key;
    if (r.library()) {
        Statement read = r.library()->connection().prepare(
            Sort_Field == 2 ? "SELECT rowid, substr(Artist, 1, 1) FROM Recordings1"
                            : "SELECT rowid, substr(Title, 1, 1) FROM Recordings1");
        by_key.reserve(static_cast<std::size_t>(r.RecordCount()));
        while (read.step() == Statement::Step::Row) {
            by_key.emplace(read.column_int64(0), first_char_order(read.column_text(1)));
        }
    }
    for (r.MoveFirst(); !r.IsEOF(); r.MoveNext()) {
        const Value key = r.Bookmark();
        const auto found =
            key.is_null() ? by_key.end() : by_key.find(static_cast<long long>(key.number()));
        cache.first.push_back(found != by_key.end() ? found->second
                                                    : first_order(r.Fields(Sort_Field)));
    }
    cache.source = datPrimaryRS.RecordSource;
    cache.field = Sort_Field;
    cache.generation = generation;
    return cache.first;
}

int Request::first_letter_at(long position) {
    const std::vector<std::uint32_t>& first = letters();
    if (position < 0 || position >= static_cast<long>(first.size())) return -1;
    return static_cast<int>(first[static_cast<std::size_t>(position)]);
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
        const std::uint32_t wanted = first_char_order(letter);
        const std::vector<std::uint32_t>& first = letters();
        const long end = std::min(List_Last, static_cast<long>(first.size()) - 1);
        for (long i = List_Pos; i <= end; ++i) {
            if (wanted <= first[static_cast<std::size_t>(i)]) {
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
