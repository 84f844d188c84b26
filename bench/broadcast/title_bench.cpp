// From a hand-over to the title on a real Icecast server's status page.
#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "audio/engine.h"
#include "audio/mix_tap.h"
#include "bench_media.h"
#include "broadcast/encoding/live_encoder.h"
#include "broadcast/encoding/server_stats.h"
#include "icecast_server.h"
#include "platform/path_map.h"

namespace tavora::audio::bench {
namespace {

using Clock = std::chrono::steady_clock;

void TitleDelay(benchmark::State& state) {
    const auto folder = std::filesystem::temp_directory_path() / "tavora-title-bench";
    std::filesystem::create_directories(folder / "tavora");
    test::IcecastServer server(folder / "icecast");
    if (!server.start()) {
        state.SkipWithError("icecast2 did not start");
        return;
    }
    Posted posted;
    Engine engine(OutputKind::Null, posted.poster());
    MixTap tap(engine);
    auto player = engine.add_player();
    player->Open(music("flac"));
    engine.settle();
    posted.run();
    player->play();
    std::ofstream(folder / "tavora" / "b.asd")
        << "codec = mp3\nbitrate = 128\nfile = c:\\tavora\\b.rec\nicecast_host = 127.0.0.1\n"
        << "icecast_port = " << server.port() << "\nicecast_mount = /b.mp3\n"
        << "icecast_password = " << test::IcecastServer::kPassword << "\n";
    PathMap paths(folder / "tavora");
    AirTitle titles;
    LiveEncoder encoder(tap, paths, titles, [](const std::string&) {});
    encoder.LoadASD((folder / "tavora" / "b.asd").string());
    encoder.Start();
    std::this_thread::sleep_for(std::chrono::seconds(2));  // connected and flowing
    double worst = 0, total = 0;
    int n = 0;
    for (auto _ : state) {
        const std::string title = "Song " + std::to_string(n) + " - Bench";
        const auto set_at = Clock::now();
        titles.set(title);
        while (TitleOf(server.status(), "/b.mp3") != title) {
            if (Clock::now() - set_at > std::chrono::seconds(10)) {
                state.SkipWithError("the title never showed");
                break;
            }
        }
        const double seconds = std::chrono::duration<double>(Clock::now() - set_at).count();
        state.SetIterationTime(seconds);
        worst = std::max(worst, seconds);
        total += seconds;
        ++n;
    }
    encoder.Stop();
    server.stop();
    std::filesystem::remove_all(folder);
    state.counters["mean_s"] = total / std::max(n, 1);
    state.counters["worst_s"] = worst;
}
BENCHMARK(TitleDelay)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavora::audio::bench
