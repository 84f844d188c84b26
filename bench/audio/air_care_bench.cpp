// What the station's care for its air costs: the loudness measurement of a
// record, in seconds of audio per second of one core, and the dead-air
// meter's share of the mixer thread.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "audio/air_meter.h"
#include "audio/engine.h"
#include "audio/loudness.h"
#include "bench_media.h"

namespace tavora::audio::bench {
namespace {

// "x_realtime_per_core": seconds of the record measured per second of CPU of
// the one thread that decodes and measures it.
void measure(benchmark::State& state, const std::string& format) {
    const std::string file = music(format);
    double best = 0;
    for (auto _ : state) {
        const double before = thread_cpu_seconds();
        std::string error;
        const auto loudness = measure_loudness(file, error);
        if (!loudness) {
            state.SkipWithError(error.c_str());
            return;
        }
        best = std::max(best, loudness->seconds / (thread_cpu_seconds() - before));
    }
    state.counters["x_realtime_per_core"] = best;
}
BENCHMARK_CAPTURE(measure, mp3, std::string("mp3"))->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_CAPTURE(measure, flac, std::string("flac"))->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_CAPTURE(measure, ogg, std::string("ogg"))->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_CAPTURE(measure, wav, std::string("wav"))->Unit(benchmark::kMillisecond)->Iterations(5);

// The mixer's block with seven players playing, against the meter on a block
// of that mix ("music") and on a silent one, where it reads every sample.
// "meter_percent_of_mix" is the meter's time over the whole mix's, meter
// included, on the mixer's thread (the render waits for the decoders without
// using it).
void meter_share(benchmark::State& state, bool silent) {
    Posted posted;
    Engine engine(OutputKind::Offline, posted.poster());
    std::vector<std::shared_ptr<Player>> players;
    for (const auto& format : kFormats) {
        if (format == "wav") continue;
        players.push_back(engine.add_player());
        players.back()->Open(music(format));
    }
    engine.settle();
    posted.run();
    for (auto& p : players)
        p->play();
    std::vector<float> block(1024 * kChannels);
    constexpr int kBlocks = 2000;
    double mix_seconds = 0;
    double meter_seconds = 0;
    AirMeter meter;
    for (auto _ : state) {
        mix_seconds = 0;
        for (int i = 0; i < kBlocks; ++i) {
            if (i % 47 == 0) {  // about a second: players that reached their end start again
                posted.run();
                for (auto& p : players)
                    if (p->PlayState() != Player::kPlaying) p->play();
            }
            const double before = thread_cpu_seconds();
            engine.render(block.data(), 1024);
            mix_seconds += thread_cpu_seconds() - before;
        }
        if (silent) std::fill(block.begin(), block.end(), 0.0f);
        const double before = thread_cpu_seconds();
        for (int i = 0; i < kBlocks; ++i) {
            meter.feed(block.data(), 1024);
            benchmark::DoNotOptimize(meter.quiet_seconds());
        }
        meter_seconds = thread_cpu_seconds() - before;
    }
    state.counters["mix_us_per_block"] = mix_seconds / kBlocks * 1e6;
    state.counters["meter_us_per_block"] = meter_seconds / kBlocks * 1e6;
    state.counters["meter_percent_of_mix"] = 100.0 * meter_seconds / mix_seconds;
}
BENCHMARK_CAPTURE(meter_share, music, false)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_CAPTURE(meter_share, silence, true)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace tavora::audio::bench
