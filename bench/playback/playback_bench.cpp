#include <benchmark/benchmark.h>

#include "playback/stand_ins.h"

// The transport's costs on probe players: a whole simulated day, and one
// tick of the 300 ms timer with the bank playing.
namespace tavora {
namespace {

// Six songs of two and a half to five minutes, cycled.
void cue_songs(test::BankRig& rig) {
    for (int seconds : {150, 180, 210, 240, 270, 300})
        rig.selection.songs.push_back({"song" + std::to_string(seconds) + ".mp3"});
}

void BM_SimulatedDay(benchmark::State& state) {
    const bool seventh = state.range(0) != 0;
    double songs = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto rig = std::make_unique<test::BankRig>(TAVORA_PLAYBACK_MEDIA);
        if (!rig->setup_error.empty()) {
            state.SkipWithError(rig->setup_error.c_str());
            return;
        }
        cue_songs(*rig);
        rig->station.Ply7_On = seventh ? 1 : 0;
        state.ResumeTiming();
        rig->run();
        rig->wait(24 * 3600);
        songs += static_cast<double>(rig->air.commits.size());
        state.PauseTiming();
        rig.reset();
        state.ResumeTiming();
    }
    state.counters["songs_per_day"] = benchmark::Counter(songs, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_SimulatedDay)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// The tick reads every player's position, state and level: what the 300 ms
// timer must afford for seven players.
void BM_TransportTick(benchmark::State& state) {
    test::BankRig rig(TAVORA_PLAYBACK_MEDIA);
    if (!rig.setup_error.empty()) {
        state.SkipWithError(rig.setup_error.c_str());
        return;
    }
    cue_songs(rig);
    rig.station.Ply7_On = 1;
    rig.run();
    rig.wait(30);  // the first set plays, the next is not yet due
    for (auto _ : state)
        rig.playback->TimerViewer_Timer();
}
BENCHMARK(BM_TransportTick)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tavora
