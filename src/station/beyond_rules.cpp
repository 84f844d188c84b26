// What the station does beyond its rules, wired from tavora.ini: the seventh
// player's bridge, the dead-air watchdog and loudness normalisation.
#include "audio/engine.h"
#include "audio/loudness.h"
#include "platform/path_map.h"
#include "players/engine_player.h"
#include "station/station_app.h"

namespace tavora {

std::optional<Measurement> measure_file(const std::string& native, std::string& error,
                                        const std::atomic<bool>* stop) {
    const auto loudness = audio::measure_loudness(native, error, stop);
    if (!loudness) return std::nullopt;
    return Measurement{loudness->integrated_lufs, loudness->true_peak_dbtp};
}

NativeFile native_files(PathMap paths) {
    return [paths = std::move(paths)](const std::string& stored) {
        if (stored.rfind("http", 0) == 0) return std::string();
        const PathMap::Result file = paths.ToNative(stored);
        return file.ok() ? file.path : std::string();
    };
}

void StationApp::apply_extensions() {
    selection.bridge_songs_only = extensions.Bridge_Songs_Only;
    dead_air.apply({extensions.Dead_Air_Watch, extensions.Dead_Air_Level, extensions.Dead_Air_Hold,
                    extensions.Dead_Air_Folder});
    loudness_target_ = {extensions.Loudness_Normalise, extensions.Loudness_Target,
                        extensions.Loudness_Ceiling};
    measure_while_normalising();
}

void StationApp::attach_air_meter(audio::Engine& engine) {
    dead_air.quiet_seconds = [&engine] { return engine.air_meter().quiet_seconds(); };
    dead_air.level_changed = [&engine](double dbfs) { engine.air_meter().threshold_dbfs(dbfs); };
    engine.air_meter().threshold_dbfs(extensions.Dead_Air_Level);
    if (auto player = engine.add_player(false)) {
        audio::Engine* offline = engine.output() == audio::OutputKind::Offline ? &engine : nullptr;
        dead_air.fallback_player(std::make_unique<EnginePlayer>(
            std::move(player),
            [&loop = services_.loop](std::function<void()> fn) { loop.post(std::move(fn)); },
            offline));
    }
}

// The library's measurements are read on the rule thread at each open; the
// worker fills them in on a thread of its own, the library file being the
// station's only shared state with it.
void StationApp::start_loudness() {
    loudness_book_ = std::make_unique<LoudnessBook>(native(station.Act_Db));
    if (!loudness_book_->ok()) loudness_book_.reset();
    measure_while_normalising();
}

// The background measuring follows the switch: on from Setup, it starts at
// once; off, a measurement under way is dropped.
void StationApp::measure_while_normalising() {
    if (!loudness_book_ || !measure_in_background || !extensions.Loudness_Normalise) {
        loudness_worker_.reset();
    } else if (!loudness_worker_) {
        loudness_worker_ = std::make_unique<LoudnessWorker>(native(station.Act_Db), measure_file,
                                                            native_files(services_.paths));
    }
}

}  // namespace tavora
