// Decoding a minute of each format through the engine's decoder (to 48 kHz stereo
// float), against the ffmpeg command decoding the same file on one thread. "ratio" is
// ffmpeg's time over ours: 1 is as fast, above 1 faster. Ours includes opening the file
// and measuring its exact length; ffmpeg's -benchmark time starts after its input is open.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "audio/decoder.h"
#include "audio/format.h"
#include "bench_media.h"

namespace tavora::audio::bench {
namespace {

void decode(benchmark::State& state, const std::string& format) {
    const std::string path = music(format);
    if (path.empty()) {
        state.SkipWithError("ffmpeg could not make the file");
        return;
    }
    std::vector<float> buffer(4096 * kChannels);
    double frames = 0;
    // Ours and ffmpeg's take turns, and each side keeps its fastest run: this machine is
    // shared, and a slow spell then falls on both sides alike.
    double ours = 1e9;
    double theirs = 1e9;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        Decoder decoder;
        if (decoder.open(path).status != OpenStatus::Succeeded) {
            state.SkipWithError("open failed");
            return;
        }
        while (std::size_t got = decoder.read(buffer.data(), 4096))
            frames += got;
        ours = std::min(
            ours, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        state.PauseTiming();
        theirs = std::min(theirs, ffmpeg_decode_seconds(path, 1));
        state.ResumeTiming();
    }
    state.counters["audio_s"] = frames / kRate / static_cast<double>(state.iterations());
    state.counters["ffmpeg_s"] = theirs;
    state.counters["ours_s"] = ours;
    state.counters["ratio"] = theirs / ours;
}

const bool registered = [] {
    for (const auto& format : kFormats) {
        benchmark::RegisterBenchmark(("decode/" + format).c_str(), decode, format)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(12);
    }
    return true;
}();

}  // namespace
}  // namespace tavora::audio::bench
