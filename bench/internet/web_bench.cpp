// The web's library search on a 100k-row library: the query behind the
// page's first list and behind each search a listener types.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>

#include "internet/web_library.h"
#include "runtime/dates.h"
#include "station/demo_library.h"
#include "test_folder.h"

namespace tavora {
namespace {

constexpr std::size_t kRows = 100'000;

const std::filesystem::path& library_file() {
    static TestFolder folder;
    static const std::filesystem::path file = [] {
        DemoOptions options;
        options.songs = 3;
        make_demo_library(folder.path(), DateSerial(2026, 11, 22), options);
        grow_demo_library(folder.path(), kRows);
        return folder.path() / "qx1.mdb";
    }();
    return file;
}

void BM_FirstPage(benchmark::State& state) {
    WebLibrary library(library_file());
    for (auto _ : state)
        benchmark::DoNotOptimize(library.search("", 1, 25));
}
BENCHMARK(BM_FirstPage)->Unit(benchmark::kMillisecond);

void BM_Search(benchmark::State& state) {
    WebLibrary library(library_file());
    for (auto _ : state)
        benchmark::DoNotOptimize(library.search("fire 77", 1, 25));
}
BENCHMARK(BM_Search)->Unit(benchmark::kMillisecond);

void BM_LastPage(benchmark::State& state) {
    WebLibrary library(library_file());
    for (auto _ : state)
        benchmark::DoNotOptimize(library.search("", static_cast<int>(kRows / 25), 25));
}
BENCHMARK(BM_LastPage)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavora
