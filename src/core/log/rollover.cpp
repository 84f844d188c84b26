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

}  // namespace

void Rank_Requests(const std::shared_ptr<Library>& library) {
    Recordset ranked;
    if (!ranked.Open(library, "CalcReq")) return;
    Transaction batch = library->transaction();
    long place = 0;
    for (ranked.MoveFirst(); !ranked.IsEOF(); ranked.MoveNext(), ++place) {
        if (is_special(ranked.Fields("Source"))) continue;
        // A row that can't be written is passed over.
        if (!ranked.Edit()) continue;
        ranked.SetField("AM40", Value(place < kTopRequests ? place + 1 : 0L));
        ranked.Update();
    }
    batch.commit();
}

void Shift_Weeks(const std::shared_ptr<Library>& library) {
    // Every right-hand side reads the row as it was, so the shift is one pass.
    const std::string w1 = column(59), w2 = column(60), w3 = column(61), w4 = column(62);
    const std::string sql = "UPDATE Recordings1 SET " + w4 + " = " + w3 + ", " + w3 + " = " + w2 +
                            ", " + w2 + " = " + w1 + ", " + w1 + " = RTW, " +
                            "[Request This Month] = RTW + " + w1 + " + " + w2 + " + " + w3 +
                            ", RTW = 0";
    Transaction batch = library->transaction();
    library->connection().exec(sql);
    library->note_write();
    batch.commit();
}

bool Roll_Over(Station& station, double now, DataControl& setup,
               const std::shared_ptr<Library>& library) {
    const double today = DateValueOf(now);
    setup.Refresh();
    Recordset& row = setup.Recordset();
    row.MoveFirst();

    if (row.Fields("Current Day") != Value::date(today)) {
        station.Log_Name = log_name_for(today);
        station.BP_On = station.BP_Tuesday && Weekday(today) == kTuesday;
        row.Edit();
        row.SetField("Current Day", Value::date(today));
        row.Update();
        if (library) Rank_Requests(library);
    }

    const Value week = row.Fields("Current Week");
    if (!week.is_null() && today - week.number() > 7) {
        row.Edit();
        row.SetField("Current Week", Value::date(today));
        row.Update();
        if (library) Shift_Weeks(library);
    }

    const Value month = row.Fields("Current Month");
    if (!month.is_null() && today - month.number() > 30) {
        row.Edit();
        row.SetField("Current Month", Value::date(today));
        row.Update();
    }

    // A Null new-day time compares false, so the weights count from midnight.
    return !(row.Fields("Time For New Day") > Value::date(TimeValueOf(now)));
}

}  // namespace tavora
