#include <benchmark/benchmark.h>

#include <unistd.h>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "runtime/dates.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {
namespace {

constexpr double kToday = 46091.0;

// Generated libraries, one per size, removed when the run ends.
class Libraries {
  public:
    ~Libraries() {
        open_.clear();
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    std::shared_ptr<Library> get(int rows) {
        auto& library = open_[rows];
        if (!library) library = generate(rows);
        return library;
    }

  private:
    std::shared_ptr<Library> generate(int rows) {
        std::filesystem::create_directories(folder_);
        const auto path = folder_ / ("qx" + std::to_string(rows) + ".mdb");
        std::filesystem::remove(path);
        create_library_file(path, kToday);
        auto library = Library::open(path, FileKind::Library).library;
        Connection& connection = library->connection();
        Transaction batch = library->transaction();
        Statement insert = connection.prepare(
            "INSERT INTO Recordings1 (Title, Artist, Category, Speed, [Long title], [Total "
            "Request],"
            " [Last Played], [Max Play Day], [Max Play Week], [Max Month], [Schedule Select],"
            " [Valid Monday], Size, [Mix Out], Length) VALUES (?, ?, ?, ?, ?, ?, ?, 1, 5, 20, ?,"
            " -1, 6, 6, ?)");
        for (int i = 0; i < rows; ++i) {
            const std::string title = "Song number " + std::to_string(i);
            const std::string artist = "Artist " + std::to_string(i % 997);
            insert.bind(1, title);
            insert.bind(2, artist);
            insert.bind(3, i % 3 == 0 ? "POP" : "Rock");
            insert.bind(4, i % 5 == 0 ? Value("Dance") : Value());
            insert.bind(5, "d:\\music\\" + artist + "\\" + title + ".mp3");
            insert.bind(6, i % 50);
            insert.bind(7, Value::date(kToday - (i % 30)));
            insert.bind(8, 1);
            insert.bind(9, Value::date(TimeSerial(0, 3, 30)));
            insert.step();
            insert.reset();
        }
        batch.commit();
        return library;
    }

    std::filesystem::path folder_ = std::filesystem::temp_directory_path() /
                                    ("tavora-store-bench-" + std::to_string(::getpid()));
    std::map<int, std::shared_ptr<Library>> open_;
};

Libraries& libraries() {
    static Libraries instance;
    return instance;
}

// Reads what the selection rules look at on each row.
double read_row(Recordset& rows) {
    double sum = rows.Fields(1).text().size() + rows.Fields(2).text().size();
    sum += rows.Fields(12).number() + rows.Fields(13).number() + rows.Fields(54).number();
    sum += rows.Fields(23).truthy() ? 1 : 0;
    return sum;
}

void BM_RequeryAndWalkNormSel(benchmark::State& state) {
    auto library = libraries().get(static_cast<int>(state.range(0)));
    Recordset rows = OpenRecordset(library, "NormSel");
    for (auto _ : state) {
        rows.Requery();
        double sum = 0;
        for (; !rows.IsEOF(); rows.MoveNext())
            sum += read_row(rows);
        benchmark::DoNotOptimize(sum);
    }
    state.counters["rows"] = static_cast<double>(rows.RecordCount());
}
BENCHMARK(BM_RequeryAndWalkNormSel)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);

// The rules' style: refresh, MoveLast, MoveFirst and Move to each row in turn.
void BM_RefreshPerRowWalk(benchmark::State& state) {
    auto library = libraries().get(static_cast<int>(state.range(0)));
    Recordset rows = OpenRecordset(library, "NormSel");
    for (auto _ : state) {
        double sum = 0;
        for (long n = 0; n < rows.RecordCount(); ++n) {
            rows.Refresh();
            rows.MoveLast();
            rows.MoveFirst();
            rows.Move(n);
            sum += read_row(rows);
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_RefreshPerRowWalk)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_UnchangedRefresh(benchmark::State& state) {
    auto library = libraries().get(10000);
    Recordset rows = OpenRecordset(library, "NormSel");
    for (auto _ : state) {
        rows.Refresh();
        benchmark::DoNotOptimize(rows.AbsolutePosition());
    }
}
BENCHMARK(BM_UnchangedRefresh);

// One Edit and Update, each its own synchronous commit.
void BM_EditUpdate(benchmark::State& state) {
    auto library = libraries().get(10000);
    Recordset rows = OpenRecordset(library, "Recordings1");
    double count = 0;
    for (auto _ : state) {
        rows.Edit();
        rows.SetField(14, ++count);
        rows.Update();
    }
}
BENCHMARK(BM_EditUpdate)->Unit(benchmark::kMicrosecond);

// A whole-library walk writing every row in one transaction, per row.
void BM_EditUpdateInOneTransaction(benchmark::State& state) {
    auto library = libraries().get(10000);
    Recordset rows = OpenRecordset(library, "Recordings1");
    for (auto _ : state) {
        state.PauseTiming();
        rows.MoveFirst();
        state.ResumeTiming();
        Transaction batch = library->transaction();
        for (; !rows.IsEOF(); rows.MoveNext()) {
            rows.Edit();
            rows.SetField(14, rows.Fields(14).number() + 1);
            rows.Update();
        }
        batch.commit();
    }
    state.SetItemsProcessed(state.iterations() * rows.RecordCount());
}
BENCHMARK(BM_EditUpdateInOneTransaction)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavora
namespace tavora {
namespace {
void BM_RequeryOnly(benchmark::State& state) {
    auto library = libraries().get(static_cast<int>(state.range(0)));
    Recordset rows = OpenRecordset(library, "NormSel");
    for (auto _ : state) {
        rows.Requery();
    }
}
BENCHMARK(BM_RequeryOnly)->Arg(100000)->Unit(benchmark::kMillisecond);
void BM_WalkOnly(benchmark::State& state) {
    auto library = libraries().get(static_cast<int>(state.range(0)));
    Recordset rows = OpenRecordset(library, "NormSel");
    for (auto _ : state) {
        library->note_write();
        double sum = 0;
        for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext())
            sum += read_row(rows);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_WalkOnly)->Arg(100000)->Unit(benchmark::kMillisecond);
}  // namespace
}  // namespace tavora
