#include <algorithm>
#include <tuple>

#include "platform/clock.h"
#include "runtime/convert.h"
#include "runtime/dates.h"
#include "runtime/strings.h"
#include "selection/fields.h"
#include "selection/selection.h"
#include "selection/time_window.h"

namespace tavora {

namespace {

// Now minus a date field; Null when the field is, so that neither a test
// nor its negation passes.
Value since(double now, const Value& then) {
    return then.is_null() ? Value() : Value(now - then.number());
}

const Value kFalse = Value::boolean(false);

// The CD player steps past a track whose on/off text is Null or "Off".
bool switched_off(Recordset& rows) {
    const Value on = field(rows, rec::CDOn);
    return on.is_null() || on == Value("Off");
}

}  // namespace

// A track the CD player would step past is not offered either.
bool Selection::offer_cd_track() {
    if (s_.CD_Mode != 1 || s_.Cue_Slot != kCdSlot) return false;
    Recordset& rows = Data3.Recordset();
    if (!(field(rows, rec::Format) == Value(s_.CD_Id))) {
        trace_row("not a track of the disc in the drive");
        return true;
    }
    weigh_cd_track(rows);
    if (switched_off(rows)) {
        trace_row("a track switched off on the CD player");
    } else {
        Filter_It();
    }
    return true;
}

// A disc's rows are in no schedule and never played when catalogued, so the
// rules turn them all away and the CD fallback takes CD_Pos. Left on the
// last row seen, that is the disc's first track every time; ranked, the
// fallback goes through the wanted tracks in turn.
void Selection::weigh_cd_track(Recordset& rows) {
    const Value last = field(rows, rec::LastPlayed);
    const CdRank here{switched_off(rows), !last.is_null(), last.is_null() ? 0.0 : last.number(),
                      Scan_Pos};
    if (cd_rank_ && !(here < *cd_rank_)) return;
    cd_rank_ = here;
    s_.CD_Pos = Scan_Pos;
}

void Selection::forget_cd_pos() {
    s_.CD_Pos = 0;
    cd_rank_.reset();
}

bool Selection::CdRank::operator<(const CdRank& other) const {
    return std::tie(off, played, when, position) <
           std::tie(other.off, other.played, other.when, other.position);
}

void Selection::ApplyRules() {
    Recordset& rows = Data3.Recordset();
    if (rows.IsEOF() || offer_cd_track()) return;
    const bool special = !field(rows, rec::Source).is_null();
    if (s_.Cue_Slot != kSeventhSlot && !special) {
        Filter_It();
    } else if (s_.Cue_Slot == 12) {
        trace_row("slot 12 takes no special record");
    } else if (s_.Cue_Slot == kSeventhSlot) {
        if (seventh_may_take(rows)) {
            Filter_It();
        } else {
            trace_row("seventh player: 30 seconds or less, or faded");
        }
    } else {
        Filter_It();
    }
}

// The seventh player takes no short clip and no record with a fade.
bool Selection::seventh_may_take(Recordset& rows) {
    return field(rows, rec::Length) > Value::date(TimeSerial(0, 0, 30)) &&
           field(rows, rec::FadeIn) == kFalse && field(rows, rec::FadeOut) == kFalse;
}

void Selection::Filter_HotCheck() {
    if (s_.Power_On == 0) return;
    Recordset& rows = Data3.Recordset();
    const Value none(0);
    for (const int chart : {rec::T40, rec::AM40, rec::D40, rec::C40}) {
        if (field(rows, chart) > none) Two_X = 1;
    }
}

void Selection::Filter_It() {
    s_.CD_Pass = 0;
    // A row of another source must not inherit the promo pass of the row
    // before it: Sel_State leaves here as it came in.
    Promo_Pass = 0;
    if (const char* why = screen_row()) {
        trace_row(why);
        return;
    }
    close_judgement(judge_row());
}

// Steps that turn a row away at once: the same-format set, the snipit run,
// CD rows, the request rules and the schedule. Null when the row goes on.
const char* Selection::screen_row() {
    Recordset& rows = Data3.Recordset();
    const std::string path = field(rows, rec::LongTitle).text();
    const std::string head = Left(path, 2);
    if (head != "QX" && head != "CD") {
        // Slots 1 and 7 open a set.
        if (s_.Cue_Slot == 7 || s_.Cue_Slot == 1) Set_Format = Right(path, 3);
        if (s_.MFilter == 1 && Right(path, 3) != Set_Format) return "another format in the set";
    }
    if (!field(rows, rec::Source).is_null() && Snip_Run >= s_.Snip_Max)
        return "special records in a row at Max Snipits";
    if (head == "CD" && Sel_State != 10) return "CD track outside the CD pass";
    if (Sel_State == 10) {
        Sel_State = 3;
        s_.CD_Pass = 1;
    }
    go_to(Scan_Pos);
    if (Scan_Pos + 1 == Scan_Count) rows.MoveLast();

    const double now = services_.clock.Now();
    if (Sel_State == 1) {
        const Value sel = field(rows, rec::Sel);
        if (since(now, field(rows, rec::LastPlayed)) < field(rows, rec::MinTime))
            return "request: minimum time between plays";
        if (sel < Value(50) && since(now, field(rows, rec::AccessDate)) < Value(1.0 / 48.0))
            return "request: web request younger than 30 minutes";
        if (sel.is_null()) return "request: no request count";
        if (sel > Value(0) && s_.PL_Build == 0) {
            // A priority request is used up by one play, a normal one counts
            // down, and a record played more than 5 times today loses all.
            rows.Edit();
            if (sel > Value(49)) s_.Req_Open = 1;
            if (field(rows, rec::HowManyToday) > Value(5) || sel > Value(49)) {
                rows.SetField(rec::Sel, Value(0));
            } else {
                rows.SetField(rec::Sel, Value(sel.number() - 1));
            }
            rows.Update();
            Sel_Found = 1;
        }
    }
    if (Sel_State == 3 && field(rows, rec::ScheduleSelect) == Value(0)) {
        if (s_.CD_Pass == 1) Sel_State = 10;
        return "not scheduled now (Schedule Select 0)";
    }
    return nullptr;
}

// Promo interval, minimum time, day, windows, charts and limits, for the
// promo and rotation passes. Gives the reason a row was not accepted.
const char* Selection::judge_row() {
    if (Sel_State != 3 && Sel_State != 0) return nullptr;
    Recordset& rows = Data3.Recordset();
    const double now = services_.clock.Now();
    const char* why = nullptr;

    if (Sel_State == 0) {
        Promo_Pass = 1;
        Sel_State = 3;
    }
    if (Promo_Pass == 1 &&
        since(s_.Clock_Play, field(rows, rec::LastPlayed)) < field(rows, rec::MinTime)) {
        Sel_State = 0;
        why = "timed promo: interval not over";
    }
    // Strict, so a zero minimum still needs the clock to have moved.
    if (!(since(now, field(rows, rec::LastPlayed)) > field(rows, rec::MinTime)))
        return why != nullptr ? why : "minimum time between plays";

    // The flag compares with False, so a Null flag does not reject.
    const int weekday = Weekday(s_.Clock_Sched);
    const int day_field = weekday == 1 ? rec::ValidSunday : rec::ValidMonday + weekday - 2;
    if (field(rows, day_field) == kFalse) {
        Sel_State = 9;
        why = "not valid on this day";
    }
    if (Sel_State == 3) {
        const Value t(TimeValueOf(services_.clock.Now()) + s_.Look_Play);
        Sel_State = 8;
        if (in_window(field(rows, rec::StartTime1), field(rows, rec::EndTime1), t) ||
            in_window(field(rows, rec::StartTime2), field(rows, rec::EndTime2), t)) {
            Sel_State = 3;
        } else {
            why = "outside both time windows";
        }
    }
    if (Sel_State == 3) {
        Two_X = 0;
        if (s_.Cue_Slot != kSeventhSlot && s_.CD_Pass == 0) Filter_HotCheck();
        why = limit(rec::HowManyMonth, rec::MaxMonth, rec::MonthlyReset, "m", "monthly limit");
        if (Sel_State == 3)
            why = limit(rec::HowManyWeek, rec::MaxPlayWeek, rec::WeeklyReset, "ww", "weekly limit");
        if (Sel_State == 3)
            why = limit(rec::HowManyToday, rec::MaxPlayDay, rec::DailyReset, "d", "daily limit");
        if (Sel_State == 3) {
            Sel_Found = 1;
            ++Pick_Count;
        }
    }
    if (Sel_State == 9 || Sel_State == 8) Sel_State = 3;
    return why;
}

// One play limit. A count is cleared only when a row at its limit comes up
// and its reset date has passed; the reset is written even when a later
// rule turns the row away. A charted row (Two_X) may play twice the limit.
const char* Selection::limit(int count_field, int max_field, int reset_field, const char* unit,
                             const char* why) {
    Recordset& rows = Data3.Recordset();
    const Value count = field(rows, count_field);
    const Value most = field(rows, max_field);
    if (!(count >= most)) return nullptr;
    if (Two_X == 1 && count >= Value(most.number() * 2)) Two_X = 0;
    if (Two_X != 0) return nullptr;
    Sel_State = 8;
    const double now = services_.clock.Now();
    if (Value(now) > field(rows, reset_field)) {
        rows.Edit();
        rows.SetField(reset_field, Value::date(DateAdd(unit, 1, now)));
        rows.SetField(count_field, Value(0));
        rows.Update();
        write_done();
        Sel_State = 3;
        return nullptr;
    }
    return why;
}

void Selection::close_judgement(const char* why) {
    Recordset& rows = Data3.Recordset();
    if (Sel_State == 1) main_.Count(8);
    if (Sel_State == 3 && s_.CD_Pass == 1) Sel_State = 10;
    if (Promo_Pass == 1) Sel_State = 0;
    if (Sel_Found == 1 && field(rows, rec::ScheduleSelect) == Value(0) && Sel_State == 3) {
        Sel_Found = 0;
        why = "not scheduled now (second look)";
    }
    if (Sel_Found != 1) {
        trace_row(why != nullptr     ? why
                  : s_.PL_Build != 0 ? "request: a playlist is being built"
                                     : "request: no open count");
        return;
    }
    trace_row("accepted");
    accept();
}

// The book-keeping of an accepted pick, then its commit.
void Selection::accept() {
    count_categories();
    if (s_.BP_On) {
        if (Data3.RecordSource != "BPSort") {
            Push_Artist();
            Push_Title();
            BP_Count = 1;
        } else {
            ++BP_Count;
            Push_Title();
        }
    }
    main_.Count(5);
    if (Two_X == 1) {
        s_.Power_Ctr = s_.Power_Every;
        main_.Count(6);
    } else {
        s_.Power_Ctr = std::max(0, s_.Power_Ctr - 1);
        caption("Count = " + std::to_string(s_.Power_Ctr));
    }
    ++Least_Ctr;
    const long rec_id = static_cast<long>(field(Data3.Recordset(), rec::RecID).number());
    Load_AmTemps();
    report(PickReport::Way::Rules, rec_id);
}

}  // namespace tavora
