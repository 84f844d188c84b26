// The desktop's costs: the binder's sync of every window after a tick, its
// idle CPU while the station plays to the null output, and the time from
// start to a painted main window on a library of 100k rows.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <cstdlib>
#include <map>
#include <memory>

#include "catalogue/loudness_worker.h"
#include "test_folder.h"
#include "ui/desktop_station.h"

namespace tavora {
namespace {

// A station of three demo songs grown to `rows`, made once per size.
const std::filesystem::path& demo_station(std::size_t rows) {
    static std::map<std::size_t, std::unique_ptr<TestFolder>> made;
    auto& folder = made[rows];
    if (!folder) {
        folder = std::make_unique<TestFolder>();
        make_demo_station(folder->path(), rows);
    }
    return folder->path();
}

// A copy of a station, so that each run starts from the same files.
struct StationCopy {
    explicit StationCopy(const std::filesystem::path& from) {
        std::filesystem::copy(from, home(), std::filesystem::copy_options::recursive);
    }
    // Measures the loudness of every record, as `tavora --analyse` does;
    // a first start would otherwise spend its first minutes measuring.
    void analyse() const {
        LoudnessBook book(home() / "qx1.mdb");
        measure_library(book, measure_file, native_files(PathMap(home())));
    }
    std::filesystem::path home() const { return folder.path() / "station"; }
    TestFolder folder;
};

void run(DesktopStation& d) {
    d.loop.run_event([&d] { d.app->qx_main.click("mnu_File_Run"); });
}

double cpu_seconds() {
    rusage use{};
    getrusage(RUSAGE_SELF, &use);
    return static_cast<double>(use.ru_utime.tv_sec + use.ru_stime.tv_sec) +
           static_cast<double>(use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e6;
}

// Every window open, the station playing; each round is one transport tick
// (not timed) and the sync that follows it.
void BM_SyncAllWindowsAfterTick(benchmark::State& state) {
    StationCopy station(demo_station(60));
    DesktopStation d(station.home(), DesktopStation::Players::Probe);
    if (!d.start()) return state.SkipWithError("start-up failed");
    run(d);
    QTest::qWait(1000);
    StationApp& app = *d.app;
    for (const char* name :
         {"Request", "frmViewer", "FrmOnAir", "frmLoding", "frmAbout", "frmSetup", "Mailfrm",
          "Form2", "frmTypeLookup", "frmTavoraDb", "AdWiz", "frmSchedule1", "Advschedule", "EncRep",
          "frmBrowser", "frmSystemInfo"}) {
        app.form(name)->Visible = true;
    }
    for (int n = 1; n <= 7; ++n)
        app.playback.Player_Forms(n).Visible = true;
    // The grids and record boxes on their rows.
    d.loop.run_event([&app] {
        app.tavora_db.Form_Load();
        app.schedule.Form_Load();
        app.advschedule.Form_Load();
    });
    d.binder->sync();
    for (auto _ : state) {
        state.PauseTiming();
        app.playback.TimerViewer_Timer();
        app.request.TimerMar_Timer();
        state.ResumeTiming();
        d.binder->sync();
    }
    state.counters["windows"] = static_cast<double>(d.binder->window_count());
}
// A fixed count: each round's untimed tick costs more than its sync.
BENCHMARK(BM_SyncAllWindowsAfterTick)->Iterations(1000)->Unit(benchmark::kMicrosecond);

// Ten seconds of play on the null output with the windows up, on a library
// analysed before the start: the CPU the whole process used, as a share of
// one core, in the steady state.
void BM_IdleCpuWhilePlaying(benchmark::State& state) {
    StationCopy station(demo_station(60));
    station.analyse();
    DesktopStation d(station.home(), DesktopStation::Players::NullOutput);
    if (!d.start()) return state.SkipWithError("start-up failed");
    run(d);
    QTest::qWait(2000);
    for (auto _ : state) {
        const double before = cpu_seconds();
        QElapsedTimer wall;
        wall.start();
        QTest::qWait(10'000);
        const double used = cpu_seconds() - before;
        state.SetIterationTime(static_cast<double>(wall.elapsed()) / 1000);
        state.counters["cpu_percent_of_one_core"] =
            100 * used / (static_cast<double>(wall.elapsed()) / 1000);
    }
}
BENCHMARK(BM_IdleCpuWhilePlaying)->UseManualTime()->Iterations(1)->Unit(benchmark::kSecond);

// From nothing to the main window painted, on a library of 100k rows.
void BM_StartToPaintedMainWindow(benchmark::State& state) {
    demo_station(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        StationCopy station(demo_station(static_cast<std::size_t>(state.range(0))));
        QElapsedTimer clock;
        clock.start();
        DesktopStation d(station.home(), DesktopStation::Players::Probe);
        if (!d.start()) return state.SkipWithError("start-up failed");
        if (!QTest::qWaitForWindowExposed(&d.desktop->main_window()))
            return state.SkipWithError("the main window never showed");
        QApplication::processEvents();
        state.SetIterationTime(static_cast<double>(clock.elapsed()) / 1000);
    }
}
BENCHMARK(BM_StartToPaintedMainWindow)
    ->Arg(100'000)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavora

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
