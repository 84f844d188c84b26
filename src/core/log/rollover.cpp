#include "core/log/rollover.h"

#include "core/log/play_log.h"
#include "runtime/dates.h"
#include "runtime/value.h"
#include "store/connection.h"
#include "store/data_control.h"
#include "store/library.h"
#include "store/recordset.h"
#include "store/schema.h"

namespace tavora {

namespace {

constexpr int kTopRequests = 75;
constexpr int kTuesday = 3;

bool is_special(const Value& source) {
    return !source.is_null() && !source.text().empty();
}

std::string column(int ordinal) {
    return quote_identifier(recordings_table().columns[ordinal].name);
}

// Saves one date of the Setup row; false, with the reason kept in `failure`
// unless one is there already, when the settings file can't be written.
bool mark(Recordset& row, const char* field, const Value& date, std::string& failure) {
    if (row.Edit() && row.SetField(field, date) && row.Update()) return true;
    if (failure.empty()) failure = std::string("Can't save ") + field + " in the settings";
    return false;
}

// Whether a piece of library work was written; if not, its reason is kept
// in `failure` unless one is there already.
bool done(const std::string& why_not, std::string& failure) {
    if (why_not.empty()) return true;
    if (failure.empty()) failure = why_not;
    return false;
}

}  // namespace

std::string Rank_Requests(const std::shared_ptr<Library>& library) {
    Recordset ranked;
    if (!ranked.Open(library, "CalcReq")) return "Can't read the query CalcReq";
    Transaction batch = library->transaction();
    if (!batch.ok()) return "Can't rank the requests: " + library->connection().error();
    long place = 0;
    for (ranked.MoveFirst(); !ranked.IsEOF(); ranked.MoveNext(), ++place) {
        if (is_special(ranked.Fields("Source"))) continue;
        // A row that can't be written is passed over.
        if (!ranked.Edit()) continue;
        ranked.SetField("AM40", Value(place < kTopRequests ? place + 1 : 0L));
        ranked.Update();
    }
    if (!batch.commit()) return "Can't rank the requests: " + library->connection().error();
    return {};
}

std::string Shift_Weeks(const std::shared_ptr<Library>& library) {
    // Every right-hand side reads the row as it was, so the shift is one pass.
    const std::string w1 = column(59), w2 = column(60), w3 = column(61), w4 = column(62);
    const std::string sql = "UPDATE Recordings1 SET " + w4 + " = " + w3 + ", " + w3 + " = " + w2 +
                            ", " + w2 + " = " + w1 + ", " + w1 + " = RTW, " +
                            "[Request This Month] = RTW + " + w1 + " + " + w2 + " + " + w3 +
                            ", RTW = 0";
    Transaction batch = library->transaction();
    if (!batch.ok() || !library->connection().exec(sql) || !batch.commit())
        return "Can't shift the weekly request counts: " + library->connection().error();
    library->note_write();
    return {};
}

bool Roll_Over(Station& station, double now, DataControl& setup,
               const std::shared_ptr<Library>& library, std::string& failure) {
    const double today = DateValueOf(now);
    setup.Refresh();
    Recordset& row = setup.Recordset();
    row.MoveFirst();

    const Value day = row.Fields("Current Day");
    if (day != Value::date(today)) {
        station.Log_Name = log_name_for(today);
        station.BP_On = station.BP_Tuesday && Weekday(today) == kTuesday;
        // The date is saved before the library work, as the rules have it;
        // when that work can't be written the old date goes back, so the
        // next check tries again and a shift is never done twice.
        if (mark(row, "Current Day", Value::date(today), failure) && library &&
            !done(Rank_Requests(library), failure))
            mark(row, "Current Day", day, failure);
    }

    const Value week = row.Fields("Current Week");
    if (!week.is_null() && today - week.number() > 7) {
        if (mark(row, "Current Week", Value::date(today), failure) && library &&
            !done(Shift_Weeks(library), failure))
            mark(row, "Current Week", week, failure);
    }

    const Value month = row.Fields("Current Month");
    if (!month.is_null() && today - month.number() > 30)
        mark(row, "Current Month", Value::date(today), failure);

    // A Null new-day time compares false, so the weights count from midnight.
    return !(row.Fields("Time For New Day") > Value::date(TimeValueOf(now)));
}

}  // namespace tavora
