// The cost of making the demo's clips, one format at a time: the seconds of
// music made per second of one core's time (real-time multiple).
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "station/demo_media.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;

constexpr double kSeconds = 60;

void BM_MakeDemoSong(benchmark::State& state, const std::string& extension) {
    const fs::path folder = fs::temp_directory_path() / "tavora-bench-demo-media";
    fs::create_directories(folder);
    DemoClip clip;
    clip.file = folder / ("song" + extension);
    clip.seconds = kSeconds;
    clip.intro = 4;
    clip.outro = 6;
    clip.root_hz = 146.8;
    clip.beats_per_second = 2;
    for (auto _ : state) {
        fs::remove(clip.file);
        const std::string error = make_demo_media({clip}, {});
        if (!error.empty()) state.SkipWithError(error.c_str());
    }
    state.counters["x_realtime"] = benchmark::Counter(
        kSeconds * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
    fs::remove_all(folder);
}
BENCHMARK_CAPTURE(BM_MakeDemoSong, mp3, std::string(".mp3"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_MakeDemoSong, ogg, std::string(".ogg"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_MakeDemoSong, flac, std::string(".flac"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_MakeDemoSong, m4a, std::string(".m4a"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_MakeDemoSong, opus, std::string(".opus"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_MakeDemoSong, wav, std::string(".wav"))->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavora
