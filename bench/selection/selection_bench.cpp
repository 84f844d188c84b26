#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <random>
#include <string>

#include "core/services.h"
#include "core/station.h"
#include "core/windows/frm_loding.h"
#include "core/windows/qx_main.h"
#include "fake_services.h"
#include "runtime/dates.h"
#include "selection/frm_schedule1.h"
#include "selection/selection.h"
#include "selection/type_lookup.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"
#include "store/statement.h"

namespace tavora {
namespace {

// Wednesday 2026-03-11 14:00.
constexpr double kNow = 46092.0 + 14.0 / 24.0;

// A station on a generated library: a realistic mix of categories, charts,
// windows, days, limits, a few open requests and timed promos, with two
// schedule entries running.
class Bench {
  public:
    explicit Bench(int rows) {
        const auto file = fake_.home() / "qx1.mdb";
        create_library_file(file, kNow);
        create_settings_file(fake_.home() / "Setup.mdb", kNow);
        library_ = pool_.open(file, FileKind::Library).library;
        fill(rows);
        setup_.DatabaseName = (fake_.home() / "Setup.mdb").string();
        setup_.RecordSource = "Setup";
        setup_.Refresh();
        station.Act_Db = "c:\\tavora\\qx1.mdb";
        station.Look_Play = station.Look_Sched = 0;
        station.Power_On = 1;
        station.Power_Every = station.Power_Ctr = 8;
        types.Form_Initialize();
        schedule.Form_Load();
        schedule.Check_Sched();
    }
    ~Bench() { library_.reset(); }

    // One slot filled as the player side does it, four minutes after the last.
    void pick() {
        fake_.clock.Advance(4 * 60 * 1000);
        station.Clock_Play = station.Clock_Sched = fake_.clock.Now();
        station.Cue_Slot = 1 + slot_++ % 6;
        selection.auto_run();
    }

    const std::shared_ptr<Library>& library() { return library_; }

    Station station;
    QXMain main{station};
    frmLoding loading;

  private:
    void fill(int rows) {
        static const char* kCategories[] = {"POP", "ROCK", "Dance", "AM", "Country", "Holiday"};
        std::mt19937 random(7);
        auto chance = [&](int percent) { return static_cast<int>(random() % 100) < percent; };
        Statement insert = library_->connection().prepare(
            "INSERT INTO Recordings1 (Title, Artist, Category, Speed, [Long title], Sel, "
            "[Min Time Between Plays], [Last Played], [Max Play Day], [How Many Today], "
            "[Max Play Week], [How Many This Week], [Max Month], [How Many This Month], "
            "[Valid Start time], [Valid End Time], [Valid Monday], [Valid Tuesday], "
            "[Valid Wednesday], [Valid Thursday], [Valid Friday], [Valid Saturday], "
            "[Valid Sunday], Source, T40, [Daily Reset], [Weekly Reset], [Monthly Reset], "
            "Length, FadeIn, FadeOut) VALUES "
            "(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,"
            "?,?,?,?)");
        Transaction batch = library_->transaction();
        for (int i = 0; i < rows; ++i) {
            const bool promo = i < 3;
            const bool request = i >= 3 && i < 8;
            int column = 0;
            auto bind = [&](const Value& value) { insert.bind(++column, value); };
            bind(Value("Title " + std::to_string(i)));
            bind(Value("Artist " + std::to_string(random() % (rows / 8 + 1))));
            bind(Value(kCategories[random() % 6]));
            bind(Value(kCategories[random() % 6]));
            bind(Value("d:\\music\\" + std::to_string(i) + ".mp3"));
            bind(Value(request ? 2 : 0));
            bind(Value::date(promo ? TimeSerial(1, 0, 0) : TimeSerial(4, 0, 0)));
            // Requests and promos were played a moment ago, so they wait.
            bind(Value::date(promo || request ? kNow - 0.01 : kNow - (random() % 5000) / 1000.0));
            bind(Value(1 + static_cast<int>(random() % 3)));
            bind(Value(static_cast<int>(random() % 3)));
            bind(Value(5));
            bind(Value(static_cast<int>(random() % 6)));
            bind(Value(20));
            bind(Value(static_cast<int>(random() % 20)));
            const bool windowed = chance(20);
            bind(Value::date(windowed ? TimeSerial(18, 0, 0) : 0));
            bind(Value::date(windowed ? TimeSerial(6, 0, 0) : TimeSerial(23, 59, 59)));
            for (int day = 0; day < 7; ++day)
                bind(Value::boolean(!chance(10)));
            bind(promo ? Value("Timed Promo") : Value());
            bind(Value(chance(2) ? 1 + static_cast<int>(random() % 40) : 0));
            bind(Value::date(kNow + (random() % 100) / 100.0));
            bind(Value::date(kNow + (random() % 700) / 100.0));
            bind(Value::date(kNow + (random() % 3000) / 100.0));
            bind(Value::date(TimeSerial(0, 3, 30)));
            bind(Value::boolean(false));
            bind(Value::boolean(false));
            insert.step();
            insert.reset();
        }
        batch.commit();
        library_->note_write();

        Recordset entries = OpenRecordset(library_, "Schedule");
        entries.Edit();
        entries.SetField("Power", Value::boolean(false));  // the "Always" entry
        entries.Update();
        for (const char* category : {"POP", "ROCK"}) {
            entries.AddNew();
            entries.SetField("Name", Value(category));
            for (const char* flag : {"Power", "DOMALL", "Mo", "Tu", "We", "Th", "Fr", "Sa", "Su"})
                entries.SetField(flag, Value::boolean(true));
            entries.SetField("Type1", Value(category));
            entries.Update();
        }
    }

    FakeServices fake_{kNow};
    LibraryPool pool_;
    std::shared_ptr<Library> library_;
    DataControl setup_{pool_, FileKind::Settings};
    int slot_ = 0;

  public:
    frmTypeLookup types{station, fake_.services, pool_};
    Selection selection{station, fake_.services, pool_, main, loading, types};
    frmSchedule1 schedule{station, fake_.services, pool_, main, types, setup_};
};

int count_statement(unsigned, void* count, void*, void*) {
    ++*static_cast<int*>(count);
    return 0;
}

void BM_GetNew(benchmark::State& state) {
    Bench bench(static_cast<int>(state.range(0)));
    bench.pick();  // the first run opens every query once
    for (auto _ : state)
        bench.pick();
    int statements = 0;
    sqlite3* db = bench.library()->connection().handle();
    sqlite3_trace_v2(db, SQLITE_TRACE_STMT, count_statement, &statements);
    bench.pick();
    sqlite3_trace_v2(db, 0, nullptr, nullptr);
    state.counters["sql_per_pick"] = statements;
    state.counters["fallbacks"] = bench.selection.Fall_Count;
}
BENCHMARK(BM_GetNew)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

// A check that finds the same entries running: nothing to rewrite.
void BM_CheckSchedSteady(benchmark::State& state) {
    Bench bench(static_cast<int>(state.range(0)));
    for (auto _ : state)
        bench.schedule.Check_Sched();
}
BENCHMARK(BM_CheckSchedSteady)->Arg(100000)->Unit(benchmark::kMillisecond);

// Each check turns the ROCK entry on or off, so a third of the library
// changes its Schedule Select.
void BM_CheckSchedFlip(benchmark::State& state) {
    Bench bench(static_cast<int>(state.range(0)));
    Recordset entries = OpenRecordset(bench.library(), "Schedule");
    entries.MoveLast();
    bool on = true;
    for (auto _ : state) {
        state.PauseTiming();
        on = !on;
        entries.Edit();
        entries.SetField("Power", Value::boolean(on));
        entries.Update();
        state.ResumeTiming();
        bench.schedule.Check_Sched();
    }
}
BENCHMARK(BM_CheckSchedFlip)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavora
