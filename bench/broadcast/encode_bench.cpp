// What recording and streaming cost: the encoder's own thread, per hour of audio,
// over a minute of the offline mix of music-like sound.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <vector>

#include "audio/engine.h"
#include "bench_media.h"
#include "broadcast/encoding/av_encoder.h"

namespace tavora::audio::bench {
namespace {

// A minute of the engine's offline mix of one music file, rendered once.
const std::vector<float>& mix_minute() {
    static const std::vector<float> mix = [] {
        Posted posted;
        Engine engine(OutputKind::Offline, posted.poster());
        auto player = engine.add_player();
        player->Open(music("flac"));
        engine.settle();
        posted.run();
        player->play();
        std::vector<float> out(static_cast<std::size_t>(kMediaSeconds * kRate) * kChannels);
        engine.render(out.data(), out.size() / kChannels);
        return out;
    }();
    return mix;
}

struct Kind {
    const char* codec;
    int kbps;
    int rate;
    int channels;
};

// `to_file`: a recording (the file's muxer, writes to disk); else a stream (its
// muxer into a byte sink, as the server connection takes it).
void encode(benchmark::State& state, Kind kind, bool to_file) {
    const std::vector<float>& mix = mix_minute();
    Profile profile{"bench", kind.codec, kind.kbps, kind.rate, kind.channels, "", std::nullopt};
    const auto file = std::filesystem::temp_directory_path() / "tavora-encode-bench.rec";
    std::size_t streamed = 0;
    double best = 1e9;
    for (auto _ : state) {
        std::string why;
        auto encoder = AvEncoder::open(profile, why);
        if (!encoder) {
            state.SkipWithError(why.c_str());
            return;
        }
        if (to_file)
            encoder->open_file(file.string(), why);
        else
            encoder->open_stream([&](const std::uint8_t*, std::size_t n) { streamed += n; }, "");
        const double before = thread_cpu_seconds();
        constexpr std::size_t kBlock = 1024;
        for (std::size_t at = 0; at < mix.size(); at += kBlock * kChannels)
            encoder->encode(mix.data() + at, std::min(kBlock, (mix.size() - at) / kChannels));
        encoder->finish();
        best = std::min(best, thread_cpu_seconds() - before);
    }
    std::filesystem::remove(file);
    // CPU seconds an hour of audio costs, and the share of one core in real time.
    state.counters["cpu_s_per_hour"] = best * 3600 / kMediaSeconds;
    state.counters["core_percent"] = best / kMediaSeconds * 100;
}

const Kind kKinds[] = {{"wma", 128, 44100, 2}, {"mp3", 24, 22050, 1},     {"mp3", 128, 44100, 2},
                       {"mp3", 192, 44100, 2}, {"vorbis", 128, 44100, 2}, {"opus", 96, 48000, 2}};

[[maybe_unused]] const bool registered = [] {
    for (const Kind& k : kKinds) {
        const std::string name = std::string(k.codec) + "_" + std::to_string(k.kbps) + "k";
        benchmark::RegisterBenchmark(("Record/" + name).c_str(), encode, k, true)
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
        if (std::string(k.codec) != "wma")
            benchmark::RegisterBenchmark(("Stream/" + name).c_str(), encode, k, false)
                ->Iterations(3)
                ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

}  // namespace
}  // namespace tavora::audio::bench
