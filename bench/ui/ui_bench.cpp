// The desktop's costs: the binder's sync of every window after a tick, its
// idle CPU while the station plays to the null output, and the time from
// start to a painted main window on a library of 100k rows.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <cstdlib>
#include <memory>

#include "audio/engine.h"
#include "platform/clock.h"
#include "platform/dialog_stand_ins.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "players/engine_player.h"
#include "players/probe_player.h"
#include "runtime/random.h"
#include "station/demo_library.h"
#include "station/station_app.h"
#include "store/library.h"
#include "test_folder.h"
#include "ui/binder.h"
#include "ui/desktop.h"
#include "ui/qt_event_loop.h"

namespace tavora {
namespace {

// A station of three demo songs grown to `rows`, made once per size.
const std::filesystem::path& demo_station(std::size_t rows) {
    static std::map<std::size_t, std::unique_ptr<TestFolder>> made;
    auto& folder = made[rows];
    if (!folder) {
        folder = std::make_unique<TestFolder>();
        DemoOptions options;
        options.songs = 3;
        make_demo_library(folder->path(), SystemClock().Now() - 1, options);
        grow_demo_library(folder->path(), rows);
    }
    return folder->path();
}

// The desktop on a copy of a demo station; the engine's null output when
// `engine` is set, else probe players.
struct Desktop {
    Desktop(std::size_t rows, bool engine) : paths(home()) {
        std::filesystem::copy(demo_station(rows), home(), std::filesystem::copy_options::recursive);
        if (engine) {
            const audio::Post post = [this](std::function<void()> fn) { loop.post(std::move(fn)); };
            sound = std::make_unique<audio::Engine>(audio::OutputKind::Null, post);
            app = std::make_unique<StationApp>(
                services, engine_players(*sound, post, probe_players(clock, loop)));
        } else {
            app = std::make_unique<StationApp>(services);
        }
        binder = std::make_unique<ui::Binder>(loop, paths, launcher);
        desktop = std::make_unique<ui::Desktop>(*app, *binder);
        loop.after_event = [this] { binder->sync(); };
    }
    std::filesystem::path home() const { return folder.path() / "station"; }
    bool start() {
        bool ok = false;
        loop.run_event([&] { ok = app->Sub_Main(); });
        return ok;
    }
    void run() {
        loop.run_event([&] { app->qx_main.click("mnu_File_Run"); });
    }

    TestFolder folder;
    SystemClock clock;
    ui::QtEventLoop loop;
    ScriptedDialogs dialogs;
    PathMap paths;
    RecordingLauncher launcher;
    Random random;
    Services services{clock, loop, dialogs, paths, launcher, random};
    std::unique_ptr<audio::Engine> sound;
    std::unique_ptr<StationApp> app;
    std::unique_ptr<ui::Binder> binder;
    std::unique_ptr<ui::Desktop> desktop;
};

double cpu_seconds() {
    rusage use{};
    getrusage(RUSAGE_SELF, &use);
    return static_cast<double>(use.ru_utime.tv_sec + use.ru_stime.tv_sec) +
           static_cast<double>(use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e6;
}

// Every window open, the station playing; each round is one transport tick
// (not timed) and the sync that follows it.
void BM_SyncAllWindowsAfterTick(benchmark::State& state) {
    Desktop d(60, false);
    if (!d.start()) return state.SkipWithError("start-up failed");
    d.run();
    QTest::qWait(1000);
    StationApp& app = *d.app;
    for (Form* form : std::initializer_list<Form*>{
             &app.request, &app.viewer, &app.playback.on_air, &app.loding, &app.about, &app.setup,
             &app.mail, &app.form2, &app.type_lookup, &app.browser, &app.system_info}) {
        form->Visible = true;
    }
    for (int n = 1; n <= 7; ++n)
        app.playback.Player_Forms(n).Visible = true;
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
BENCHMARK(BM_SyncAllWindowsAfterTick)->Unit(benchmark::kMicrosecond);

// Ten seconds of play on the null output with the windows up: the CPU the
// whole process used, as a share of one core.
void BM_IdleCpuWhilePlaying(benchmark::State& state) {
    Desktop d(60, true);
    if (!d.start()) return state.SkipWithError("start-up failed");
    d.run();
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
        QElapsedTimer clock;
        clock.start();
        Desktop d(static_cast<std::size_t>(state.range(0)), false);
        const qint64 copied = clock.elapsed();
        if (!d.start()) return state.SkipWithError("start-up failed");
        if (!QTest::qWaitForWindowExposed(&d.desktop->main_window()))
            return state.SkipWithError("the main window never showed");
        QApplication::processEvents();
        state.SetIterationTime(static_cast<double>(clock.elapsed() - copied) / 1000);
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
