// A simulated day of the whole station on a library of 10,000 rows: start-up,
// auto start, every timer, selection and the bank, on probe players and on
// the real engine rendering offline. The rows share the demo's generated
// songs, so the engine decodes real files all day.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "runtime/dates.h"
#include "sim/simulator.h"
#include "station/demo_library.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;

const double kStart = DateSerial(2026, 3, 10) + 6.5 / 24.0;
constexpr int kRows = 10'000;
constexpr int kSongs = 24;

// A fresh install folder for one run: its own files, the songs shared.
fs::path fresh_copy(const fs::path& master, const fs::path& home) {
    fs::remove_all(home);
    fs::create_directories(home);
    for (const auto& entry : fs::directory_iterator(master)) {
        if (entry.path().filename() == "music")
            fs::create_directory_symlink(entry.path(), home / "music");
        else
            fs::copy(entry.path(), home / entry.path().filename(), fs::copy_options::recursive);
    }
    return home;
}

// The library made once: a demo of a few songs grown to `kRows` rows.
class Library10k {
  public:
    Library10k() : folder_(fs::temp_directory_path() / "tavora-bench-day") {
        fs::remove_all(folder_);
        DemoOptions options;
        options.songs = kSongs;
        const DemoReport demo = make_demo_library(folder_ / "master", kStart - 1, options);
        if (!demo.error.empty()) {
            error = demo.error;
            return;
        }
        error = grow_demo_library(folder_ / "master", kRows);
    }
    ~Library10k() { fs::remove_all(folder_); }

    fs::path fresh_home() const { return fresh_copy(folder_ / "master", folder_ / "run"); }

    std::string error;

  private:
    fs::path folder_;
};

// A number of the run's last line, "END ... name=<n> ...".
double end_count(const std::string& output, const std::string& name) {
    const auto end = output.rfind("END ");
    const auto at = output.find(" " + name + "=", end);
    return at == std::string::npos ? -1 : std::stod(output.substr(at + name.size() + 2));
}

// Runs the station for `days` in a fresh install folder each iteration, the
// folder's making left out of the time, and counts what the last run's END
// line says.
void simulate_each_iteration(benchmark::State& state, const std::function<fs::path()>& fresh_home,
                             int days, bool probe) {
    std::string output;
    for (auto _ : state) {
        state.PauseTiming();
        SimulationOptions options;
        options.home = fresh_home();
        options.start = kStart;
        options.duration_ms = days * 24LL * 3600 * 1000;
        options.probe_players = probe;
        std::ostringstream out, err;
        state.ResumeTiming();
        run_simulation(options, out, err);
        output = out.str();
    }
    for (const char* name : {"picks", "aired", "fallbacks", "dead_air_s"})
        state.counters[name] = end_count(output, name);
}

void BM_SimulatedDay(benchmark::State& state) {
    static const Library10k library;
    if (!library.error.empty()) {
        state.SkipWithError(library.error.c_str());
        return;
    }
    simulate_each_iteration(
        state, [] { return library.fresh_home(); }, 1, state.range(0) == 0);
}
BENCHMARK(BM_SimulatedDay)
    ->ArgName("engine")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kSecond)
    ->Iterations(1);

// A month of the shipped demo on probe players, with the seventh player's
// fallback kept to songs (1) or left to the rules (0): the dead air of its
// short bridges.
void BM_DemoMonth(benchmark::State& state) {
    static const fs::path master = fs::temp_directory_path() / "tavora-bench-demo-master";
    static const DemoReport demo = [] {
        fs::remove_all(master);
        return make_demo_library(master, kStart - 1, DemoOptions{});
    }();
    if (!demo.error.empty()) {
        state.SkipWithError(demo.error.c_str());
        return;
    }
    const fs::path home = fs::temp_directory_path() / "tavora-bench-demo-month";
    const auto fresh_home = [&state, &home] {
        fresh_copy(master, home);
        std::ofstream(home / "tavora.ini")
            << "Seventh Player Songs Only=" << state.range(0) << "\r\n";
        return home;
    };
    simulate_each_iteration(state, fresh_home, 30, true);
    fs::remove_all(home);
}
BENCHMARK(BM_DemoMonth)
    ->ArgName("songs_only")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kSecond)
    ->Iterations(1);

}  // namespace
}  // namespace tavora
