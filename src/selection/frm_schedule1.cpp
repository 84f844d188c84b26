#include "selection/frm_schedule1.h"
#include "platform/clock.h"

#include "core/log/rollover.h"
#include "platform/dialogs.h"
#include "platform/path_map.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "selection/fields.h"
#include "selection/time_window.h"
#include "selection/type_lookup.h"

namespace tavora {

namespace {

constexpr int kMaxActive = 100;
const Value kFalse = Value::boolean(false);

double count_of(Recordset& weights) {
    return field(weights, weight::ExcludeFiles).number();
}
double weight_of(Recordset& weights) {
    return field(weights, weight::ValidFiles).number();
}

}  // namespace

frmSchedule1::frmSchedule1(Station& station, Services& services, LibraryPool& pool, QXMain& main,
                           frmTypeLookup& types, DataControl& setup)
    : Form("frmSchedule1"),
      datPrimaryRS(pool),
      MainDB(pool),
      DataSched(pool),
      DataType(pool),
      DataTcheck(pool),
      s_(station),
      services_(services),
      main_(main),
      types_(types),
      setup_(setup) {
    Active_Cats.fill("NONE");
    Caption = "Schedule";
    datPrimaryRS.RecordSource = "select * from [Schedule] Order by [Name]";
    MainDB.RecordSource = "Recordings1";
    DataSched.RecordSource = "Schedule";
    DataType.RecordSource = "select * from [Type Lookup] Order by [Type]";
    DataTcheck.RecordSource = "SRequest";
    CheckTime = [this] { tavora::CheckTime(s_, DataTcheck, main_, players); };
    add_editor_controls();
}

void frmSchedule1::Form_Load() {
    const std::string path = services_.paths.ToNative(s_.Act_Db).path;
    for (DataControl* data : {&datPrimaryRS, &MainDB, &DataSched, &DataType, &DataTcheck}) {
        data->DatabaseName = path;
        data->Refresh();
    }
    DBCombo1.Clear();
    Recordset& categories = DataType.Recordset();
    for (categories.MoveFirst(); !categories.IsEOF(); categories.MoveNext())
        DBCombo1.AddItem(field(categories, 1).text());
    Loaded = true;
    datPrimaryRS_Reposition();
}

// The file of the check. The rewrite of the recordings goes straight to it,
// so the small schedule table opens it: a refresh of MainDB would read the
// key of every recording after each rewrite.
std::shared_ptr<Library> frmSchedule1::library() {
    DataSched.Refresh();
    return DataSched.Recordset().library();
}

void frmSchedule1::Check_Sched() {
    // The look-ahead: the rules judge the moment the next pick will start.
    CheckTime();
    const double now = services_.clock.Now();
    s_.Clock_Play = now + s_.Look_Play;
    s_.Clock_Sched = now + s_.Look_Sched;
    main_.Panel(3).Text = date_text(s_.Clock_Play);
    main_.Panel(4).Text = date_text(s_.Clock_Sched);

    const std::shared_ptr<Library> file = library();
    // Between midnight and the new-day time the weights are off.
    std::string failure;
    const bool weights_on = Roll_Over(s_, now, setup_, file, failure);
    // Every check tries again, so the operator hears of a reason only once.
    if (!failure.empty() && failure != roll_over_failure_)
        services_.dialogs.MsgBox(failure + ". It will be tried again at the next check.",
                                 Buttons::OKOnly, "Roll-over", Icon::Exclamation);
    roll_over_failure_ = failure;
    types_.Label3.Caption.clear();
    types_.Label5.Caption.clear();

    // A weight cycle ends when no active category has weight left, or when
    // the fallback showed that the rules starve.
    bool weight_left = false;
    Recordset& weights = types_.Data2.Recordset();
    types_.Data2.Refresh();
    weights.MoveFirst();
    for (weights.MoveNext(); !weights.IsEOF() && !weight_left; weights.MoveNext()) {
        if (active(field(weights, weight::Category).text()))
            weight_left =
                weight_of(weights) > count_of(weights) && count_of(weights) != weight::kNotWeighted;
    }
    if (!weight_left || s_.Fall_Used != 0) {
        s_.Fall_Used = 0;
        reset_weights();
    }

    Sched_Changed = 0;
    All_Charts = 0;
    Active_Next = 1;
    DataSched.Refresh();
    Recordset& entries = DataSched.Recordset();
    for (entries.MoveFirst(); !entries.IsEOF(); entries.MoveNext())
        judge_entry(weights_on, entries);
    for (int i = Active_Next; i <= kMaxActive; ++i)
        Active_Cats[i] = "NONE";
    --Active_Next;
    rewrite_schedule_select();
}

// The previous check's list, read as it stops: at the first "NONE" below
// index 99.
bool frmSchedule1::active(const std::string& category) const {
    for (int i = 1; i <= kMaxActive; ++i) {
        if (Active_Cats[i] == "NONE" && i < 99) return false;
        if (Active_Cats[i] == category) return true;
    }
    return false;
}

void frmSchedule1::reset_weights() {
    Recordset& weights = types_.Data2.Recordset();
    weights.MoveFirst();
    for (weights.MoveNext(); !weights.IsEOF(); weights.MoveNext()) {
        if (count_of(weights) == weight::kNotWeighted) continue;
        weights.Edit();
        weights.SetField(weight::ExcludeFiles, Value("0"));
        weights.Update();
    }
}

void frmSchedule1::judge_entry(bool weights_on, Recordset& entry) {
    const double now = services_.clock.Now();
    Sched_Hit = 0;
    Sched_Stopped = 0;
    if (s_.Over_End < now) s_.Over_On = 0;
    if (s_.Over_On == 1) {
        Sched_Hit = field(entry, sched::Override) == Value(1) ? 2 : 0;
    } else {
        if (field(entry, sched::Power).truthy()) Sched_Hit = 1;
        if (field(entry, sched::RunNow).truthy() && Sched_Hit == 1) Sched_Hit = 2;
        if (Sched_Hit == 1 && !field(entry, sched::DOMALL).truthy() &&
            field(entry, sched::DOM1) != Value(Day(s_.Clock_Sched)))
            Sched_Hit = 0;
        if (Sched_Hit == 1) {
            const Value t(TimeValueOf(now) + s_.Look_Sched);
            Sched_Hit =
                in_window(field(entry, sched::STime), field(entry, sched::ETime), t) ? 1 : 0;
        }
        if (Sched_Hit == 1) {
            const int weekday = Weekday(s_.Clock_Sched);
            const int day_field = weekday == 1 ? sched::Su : sched::Mo + weekday - 2;
            if (field(entry, day_field) == kFalse) Sched_Hit = 0;
        }
        if (Sched_Hit == 0 && field(entry, sched::DOWALL).truthy()) {
            Sched_Changed = 1;
            Sched_Stopped = 1;
            entry.Edit();
            entry.SetField(sched::DOWALL, kFalse);
            entry.Update();
        }
    }
    if (Sched_Hit == 0) return;
    if (field(entry, sched::UsePL).truthy()) {
        All_Charts = 1;
    } else {
        activate(field(entry, sched::Type1).text(), weights_on);
    }
    if (!field(entry, sched::DOWALL).truthy()) {
        Sched_Changed = 1;
        entry.Edit();
        entry.SetField(sched::DOWALL, Value::boolean(true));
        entry.Update();
    }
}

void frmSchedule1::activate(const std::string& category, bool weights_on) {
    auto add = [this](const std::string& name) {
        if (Active_Next <= kMaxActive) Active_Cats[Active_Next] = name;
        types_.Label3.Caption += name + ", ";
        ++Active_Next;
    };
    if (!weights_on) {
        add(category);
        Label1.Caption = "Weight Limiter OFF";
        return;
    }
    Label1.Caption = "Weight Limiter ON";
    types_.Data2.Refresh();
    Recordset& weights = types_.Data2.Recordset();
    weights.MoveFirst();
    for (weights.MoveNext(); !weights.IsEOF(); weights.MoveNext()) {
        if (field(weights, weight::Category).text() != category) continue;
        if (weight_of(weights) > count_of(weights) || count_of(weights) == weight::kNotWeighted) {
            add(category);
        } else if (Active_Next <= kMaxActive) {
            // The monitor names the list entry at this place, as it stands.
            types_.Label5.Caption += Active_Cats[Active_Next] + ", ";
        }
    }
}

}  // namespace tavora
