#include "platform/clock.h"
#include "runtime/convert.h"
#include "runtime/strings.h"
#include "selection/fields.h"
#include "selection/selection.h"
#include "selection/type_lookup.h"

namespace tavora {

namespace {

// Null stays Null, as the field arithmetic of the library has it.
Value plus_one(const Value& count) {
    return count.is_null() ? Value() : Value(count.number() + 1);
}

double length_of(const Value& length) {
    return length.text().empty() ? 0 : length.number();
}

struct Chart {
    int field;
    const char* lead_type;
};

// The order in which a lead is chosen: a later chart wins only with a
// strictly lower position.
constexpr Chart kLeadCharts[] = {
    {rec::C40, "TopAC"}, {rec::D40, "TopDance"}, {rec::T40, "Top40"}, {rec::AM40, "TopRequest"}};

}  // namespace

// Each accepted pick counts once against every weighted category it names.
// The first row of the weights stands for no category and is passed over.
void Selection::count_categories() {
    Recordset& row = Data3.Recordset();
    const Value categories[] = {field(row, rec::Category), field(row, rec::Speed),
                                field(row, rec::Type)};
    DataControl& weights = types_.Data2;
    weights.Refresh();
    Recordset& table = weights.Recordset();
    table.MoveFirst();
    for (table.MoveNext(); !table.IsEOF(); table.MoveNext()) {
        const Value name = field(table, weight::Category);
        const bool named = name == categories[0] || name == categories[1] || name == categories[2];
        const double count = field(table, weight::ExcludeFiles).number();
        if (!named || count == weight::kNotWeighted) continue;
        table.Edit();
        table.SetField(weight::ExcludeFiles, Value(number_text(count + 1)));
        table.Update();
    }
}

void Selection::Load_AmTemps() {
    Recordset& row = Data3.Recordset();
    const int slot = s_.Cue_Slot;
    row.Edit();
    row.SetField(rec::LastPlayed, Value::date(services_.clock.Now()));
    for (const int counter :
         {rec::HowManyToday, rec::HowManyWeek, rec::HowManyMonth, rec::TotalRequest})
        row.SetField(counter, plus_one(field(row, counter)));
    row.Update();

    if (s_.CD_Mode == 1 && slot == kCdSlot && hooks.cd_seek)
        hooks.cd_seek(static_cast<int>(Int(Val(field(row, rec::CDTrack).text()))));

    // Any special record counts towards the run; one normal record ends it.
    if (field(row, rec::Source).is_null()) {
        s_.Slot_Special[slot] = 0;
        Snip_Run = 0;
    } else {
        s_.Slot_Special[slot] = 1;
        ++Snip_Run;
    }

    // A playlist marker is never played: it turns into requests and the
    // caller fills the slot again.
    const std::string path = field(row, rec::LongTitle).text();
    if (Left(path, 4) == "QXPL") {
        PL_Random = Mid(path, 5, 4) == "Rand" ? 1 : 0;
        Load_Playlist();
        s_.PL_Marker = 1;
        return;
    }

    load_lead(slot);
    s_.Look_Sched += s_.Slot_Length[slot];
    if (s_.Slot_Special[slot] != 0) return;

    Lead_Type.clear();
    Lead_Pos = 0;
    Lead_Field = 0;
    for (const Chart& chart : kLeadCharts) {
        const double position = field(row, chart.field).number();
        if (position > 0 && (Lead_Pos == 0 || position < Lead_Pos)) {
            Lead_Pos = static_cast<int>(position);
            Lead_Type = chart.lead_type;
            Lead_Field = chart.field;
        }
    }
    if (Lead_Pos > 0) Check_Lead();
}

// Copies the current row of Data3 into a slot, as a commit and a chart lead
// both do; the lead then marks the slot special itself.
void Selection::load_lead(int slot) {
    Recordset& row = Data3.Recordset();
    s_.Cue_File = field(row, rec::LongTitle).text();
    s_.Slot_File[slot] = s_.Cue_File;
    s_.Slot_Title[slot] = field(row, rec::Title).text() + " - " + field(row, rec::Artist).text();
    s_.Slot_MixIn[slot] = field(row, rec::Size).number();
    s_.Slot_MixOut[slot] = field(row, rec::MixOut).number();
    s_.Slot_RecID[slot] = static_cast<long>(field(row, rec::RecID).number());
    s_.Slot_Length[slot] = length_of(field(row, rec::Length));
    s_.Slot_Started[slot] = 0;
    s_.Slot_Ready[slot] = 1;
    s_.Slot_Start[slot] = field(row, rec::StartPos).number();
    s_.Slot_End[slot] = field(row, rec::EndPos).number();
    s_.Slot_Vol[slot] = field(row, rec::StartVol).number();
    s_.Slot_FadeIn[slot] = field(row, rec::FadeIn).truthy();
    s_.Slot_FadeOut[slot] = field(row, rec::FadeOut).truthy();
}

// Puts the spoken lead for the pick's chart position in front of it: the
// lead takes the slot and the song waits in the hold slot 13.
void Selection::Check_Lead() {
    const int slot = s_.Cue_Slot;
    if (slot == 12 || slot == kSeventhSlot || slot == kCdSlot) return;
    Recordset& rows = Data3.Recordset();
    const long remembered = rows.AbsolutePosition();
    const std::string source = Data3.RecordSource;
    Data3.RecordSource = "Special Sort";
    Data3.Refresh();
    long last = 0;
    if (rows.RecordCount() > 0) {
        rows.MoveLast();
        last = rows.AbsolutePosition();
    }
    rows.MoveFirst();
    // The bound stops short of the last index, so the very last lead is
    // never looked at.
    for (Scan_Pos = 0; Scan_Pos < last && !rows.IsEOF(); ++Scan_Pos, rows.MoveNext()) {
        if (!(field(rows, Lead_Field) == Value(Lead_Pos) &&
              field(rows, rec::Source) == Value(Lead_Type)))
            continue;
        if (s_.MFilter == 1 && Right(field(rows, rec::LongTitle).text(), 3) == Set_Format)
            s_.MFilter = 2;
        if (s_.MFilter != 2 && s_.MFilter != 0) continue;  // a lead of another format
        if (s_.MFilter == 2) s_.MFilter = 1;

        const int hold = 13;
        s_.Slot_Special[hold] = s_.Slot_Special[slot];
        s_.Slot_File[hold] = s_.Slot_File[slot];
        s_.Slot_Title[hold] = s_.Slot_Title[slot];
        s_.Slot_MixIn[hold] = s_.Slot_MixIn[slot];
        s_.Slot_MixOut[hold] = s_.Slot_MixOut[slot];
        s_.Slot_RecID[hold] = s_.Slot_RecID[slot];
        s_.Slot_Length[hold] = s_.Slot_Length[slot];
        s_.Slot_Started[hold] = s_.Slot_Started[slot];
        s_.Slot_Start[hold] = s_.Slot_Start[slot];
        s_.Slot_End[hold] = s_.Slot_End[slot];
        s_.Slot_Vol[hold] = std::min(s_.Slot_Vol[slot], 0.0);
        s_.Slot_FadeIn[hold] = s_.Slot_FadeIn[slot];
        s_.Slot_FadeOut[hold] = s_.Slot_FadeOut[slot];
        s_.Slot_Ready[hold] = 1;

        load_lead(slot);
        s_.Slot_Special[slot] = 1;
        if (hooks.trace) trace("chart lead " + Lead_Type + " " + std::to_string(Lead_Pos));

        const Value last_played = field(rows, rec::LastPlayed);
        rows.Edit();
        rows.SetField(rec::AccessDate, last_played);
        rows.SetField(rec::LastPlayed, Value::date(services_.clock.Now()));
        rows.Update();
        Lead_Pos = 9999;
        break;
    }
    return_to(source, remembered);
}

// Turns the members of a playlist into priority requests: Sel becomes
// their order plus 1000, which tops the request list.
void Selection::Load_Playlist() {
    Recordset& rows = Data3.Recordset();
    const Value marker = field(rows, rec::RecID);
    const long remembered = rows.AbsolutePosition();
    const std::string source = Data3.RecordSource;
    Data3.RecordSource = "Title Sort";
    Data3.Refresh();
    rows.MoveLast();
    rows.MoveFirst();

    DataPL.DatabaseName = Data3.DatabaseName;
    DataPL.Refresh();
    Recordset& links = DataPL.Recordset();
    for (links.MoveFirst(); !links.IsEOF(); links.MoveNext()) {
        if (!(field(links, 2) == marker)) continue;
        const Value member = field(links, 1);
        rows.MoveFirst();
        while (!rows.IsEOF() &&
               !(field(rows, rec::RecID) == member && field(rows, rec::RecID) != marker))
            rows.MoveNext();
        if (rows.IsEOF()) continue;
        rows.Edit();
        rows.SetField(rec::Sel, Value(field(links, 6).number() + 1000));
        rows.Update();
    }
    return_to(source, remembered);
}

void Selection::return_to(const std::string& source, long position) {
    Data3.RecordSource = source;
    Data3.Refresh();
    Recordset& rows = Data3.Recordset();
    if (rows.IsEOF() && rows.RecordCount() == 0) return;
    rows.MoveLast();
    rows.MoveFirst();
    rows.Move(position);
}

}  // namespace tavora
