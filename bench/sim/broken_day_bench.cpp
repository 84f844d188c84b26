// A simulated day of the shipped demo on the real engine, rendering offline,
// with broken and silent files among its songs: the dead air the mix meter
// hears, and what the watchdog did about it, from the play logs.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "broken_files.h"
#include "runtime/dates.h"
#include "sim/simulator.h"
#include "station/demo_library.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;

const double kStart = DateSerial(2026, 3, 10) + 6.5 / 24.0;

double end_number(const std::string& output, const std::string& name) {
    std::smatch m;
    const std::string end = output.substr(output.rfind("END "));
    return std::regex_search(end, m, std::regex(" " + name + "=([0-9.]+)")) ? std::stod(m[1]) : -1;
}

// Lines of every day's play log that start with `start`.
double log_count(const fs::path& home, const std::string& start) {
    double count = 0;
    for (const auto& entry : fs::directory_iterator(home)) {
        if (entry.path().filename().string().rfind("qxl", 0) != 0) continue;
        std::ifstream in(entry.path());
        for (std::string line; std::getline(in, line);)
            count += line.rfind(start, 0) == 0;
    }
    return count;
}

void BM_BrokenDemoDay(benchmark::State& state) {
    const fs::path folder = fs::temp_directory_path() / "tavora-bench-broken-day";
    const fs::path home = folder / "station";
    std::string output;
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove_all(folder);
        const DemoReport demo = make_demo_library(home, kStart - 1, DemoOptions{});
        const BrokenRows broken =
            demo.error.empty() ? break_songs(home, state.range(0)) : BrokenRows{{}, demo.error};
        if (!broken.error.empty()) {
            state.SkipWithError(broken.error.c_str());
            fs::remove_all(folder);
            return;
        }
        SimulationOptions options;
        options.home = home;
        options.start = kStart;
        options.duration_ms = 24LL * 3600 * 1000;
        std::ostringstream out, err;
        state.ResumeTiming();
        run_simulation(options, out, err);
        output = out.str();
    }
    for (const char* name : {"aired", "dead_air_s", "longest_dead_air_s"})
        state.counters[name] = end_number(output, name);
    state.counters["alarms"] = log_count(home, "DEAD AIR at:");
    state.counters["skips"] = log_count(home, "DEAD AIR SKIP at:");
    state.counters["fallbacks"] = log_count(home, "DEAD AIR FALLBACK at:");
    state.counters["recoveries"] = log_count(home, "DEAD AIR RECOVERED at:");
    fs::remove_all(folder);
}
BENCHMARK(BM_BrokenDemoDay)
    ->ArgName("broken_of_each_kind")
    ->Arg(2)
    ->Unit(benchmark::kSecond)
    ->Iterations(1);

}  // namespace
}  // namespace tavora
