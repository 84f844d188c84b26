// The engine as the station uses it: seven players at once, offline and in real time,
// and what an open player costs in memory.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "audio/engine.h"
#include "bench_media.h"

namespace tavora::audio::bench {
namespace {

constexpr int kPlayers = 7;

// Every format but WAV, which costs the decoder next to nothing.
std::vector<std::string> seven_files() {
    std::vector<std::string> files;
    for (const auto& format : kFormats) {
        if (format != "wav") files.push_back(music(format));
    }
    return files;
}

std::vector<std::shared_ptr<Player>> start_seven(Engine& engine,
                                                 const std::vector<std::string>& files) {
    std::vector<std::shared_ptr<Player>> players;
    for (int i = 0; i < kPlayers; ++i) {
        players.push_back(engine.add_player());
        players.back()->Open(files[static_cast<std::size_t>(i)]);
    }
    engine.settle();
    return players;
}

// Seven players mixed offline; "x_realtime_per_core" is seconds of audio per second of
// CPU used by the whole process (decoder threads included). "ffmpeg_alone_x" is the
// same measure for the ffmpeg command decoding the seven files and nothing else (no
// resampling, no mixing): the ceiling on this CPU. The two take turns, a minute of
// audio each, and each keeps its best round: this machine's speed drifts, and a slow
// spell then falls on both alike. "mixer_thread_x" counts only the CPU of the thread
// that renders, which waits while the decoders catch up.
void offline_seven(benchmark::State& state, const std::vector<std::string>& files) {
    Posted posted;
    Engine engine(OutputKind::Offline, posted.poster());
    auto players = start_seven(engine, files);
    posted.run();
    for (auto& p : players) {
        p->Volume(-600);
        p->play();
    }
    std::vector<float> block(1024 * kChannels);
    const double round_frames = kMediaSeconds * kRate;
    double ours = 0;
    double mixer = 0;
    double theirs = 0;
    for (auto _ : state) {
        // Every ring full at both ends of a round, so its CPU is the decoding of the
        // minute it mixed, no more and no less.
        wait_until_idle();
        const double cpu_before = process_cpu_seconds();
        const double mixer_before = thread_cpu_seconds();
        for (double frames = 0; frames < round_frames; frames += 1024) {
            engine.render(block.data(), 1024);
            if (static_cast<std::int64_t>(frames) % kRate < 1024) {
                posted.run();  // players that reached their end stop here
                for (auto& p : players) {
                    if (p->PlayState() != Player::kPlaying) p->play();
                }
            }
        }
        wait_until_idle();
        ours = std::max(ours, kMediaSeconds / (process_cpu_seconds() - cpu_before));
        mixer = std::max(mixer, kMediaSeconds / (thread_cpu_seconds() - mixer_before));
        state.PauseTiming();
        double ffmpeg_seconds = 0;
        for (const auto& file : files)
            ffmpeg_seconds += ffmpeg_decode_seconds(file, 1);
        theirs = std::max(theirs, kMediaSeconds / ffmpeg_seconds);
        state.ResumeTiming();
    }
    state.counters["x_realtime_per_core"] = ours;
    state.counters["ffmpeg_alone_x"] = theirs;
    state.counters["share_of_ffmpeg"] = ours / theirs;
    state.counters["mixer_thread_x"] = mixer;
}
void BM_OfflineSevenFormats(benchmark::State& state) {
    offline_seven(state, seven_files());
}
BENCHMARK(BM_OfflineSevenFormats)->Unit(benchmark::kMillisecond)->Iterations(6);

// The usual library: seven MP3 files at 44.1 kHz.
void BM_OfflineSevenMp3(benchmark::State& state) {
    offline_seven(state, std::vector<std::string>(kPlayers, music("mp3")));
}
BENCHMARK(BM_OfflineSevenMp3)->Unit(benchmark::kMillisecond)->Iterations(6);

// Seven players on the real-time null output for five seconds: CPU as a share of one core.
void BM_NullOutputSevenPlayers(benchmark::State& state) {
    for (auto _ : state) {
        Posted posted;
        Engine engine(OutputKind::Null, posted.poster());
        auto players = start_seven(engine, seven_files());
        posted.run();
        for (auto& p : players)
            p->play();
        const double cpu_before = process_cpu_seconds();
        const auto start = std::chrono::steady_clock::now();
        std::this_thread::sleep_for(std::chrono::seconds(5));
        const double wall =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.counters["cpu_percent_of_core"] = 100.0 * (process_cpu_seconds() - cpu_before) / wall;
    }
}
BENCHMARK(BM_NullOutputSevenPlayers)->Unit(benchmark::kSecond)->Iterations(1);

// Resident memory added by each open player with its ten seconds decoded ahead.
void BM_MemoryPerOpenPlayer(benchmark::State& state) {
    const auto files = seven_files();
    for (auto _ : state) {
        Engine engine(OutputKind::Offline, [](std::function<void()>) {});
        const double before = resident_bytes();
        std::vector<std::shared_ptr<Player>> players;
        for (int round = 0; round < 2; ++round) {
            for (const auto& file : files) {
                players.push_back(engine.add_player());
                players.back()->Open(file);
            }
        }
        engine.settle();
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));  // rings filled
        state.counters["MB_per_player"] =
            (resident_bytes() - before) / 1e6 / static_cast<double>(players.size());
    }
}
BENCHMARK(BM_MemoryPerOpenPlayer)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
}  // namespace tavora::audio::bench
