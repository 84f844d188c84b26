// Start-up from the first statement to the idle state on a large library,
// which the compaction at every start dominates.
#include <benchmark/benchmark.h>

#include "fake_services.h"
#include "runtime/dates.h"
#include "station/station_app.h"
#include "store/library.h"
#include "store/library_files.h"

namespace tavora {
namespace {

const double kStart = DateSerial(2026, 3, 10) + 0.5;

void fill(const std::filesystem::path& file, int rows) {
    auto library = Library::open(file, FileKind::Library).library;
    Transaction batch = library->transaction();
    Statement insert = library->connection().prepare(
        "INSERT INTO Recordings1 (Title, Artist, Category, [Long title], [Total Request]) "
        "VALUES (?, ?, 'POP', ?, ?)");
    for (int i = 0; i < rows; ++i) {
        insert.bind(1, "Title " + std::to_string(i));
        insert.bind(2, "Artist " + std::to_string(i % 1000));
        insert.bind(3, "d:\\music\\" + std::to_string(i) + ".mp3");
        insert.bind(4, i % 40);
        insert.step();
        insert.reset();
    }
    batch.commit();
}

void BM_SubMainToIdle(benchmark::State& state) {
    FakeServices fake(kStart);
    create_settings_file(fake.home() / "Setup.mdb", kStart);
    create_library_file(fake.home() / "qx1.mdb", kStart);
    fill(fake.home() / "qx1.mdb", static_cast<int>(state.range(0)));
    for (auto _ : state) {
        StationApp app(fake.services);
        if (!app.Sub_Main()) state.SkipWithError("start-up did not reach the idle state");
        benchmark::DoNotOptimize(app.station.Run_Mode);
    }
}
BENCHMARK(BM_SubMainToIdle)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace tavora
