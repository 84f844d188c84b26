#pragma once

#include <functional>
#include <iostream>
#include <mutex>
#include <string>

#include "audio/engine.h"
#include "audio/mix_tap.h"
#include "broadcast/encoding/live_encoder.h"
#include "core/services.h"
#include "platform/event_loop.h"
#include "players/engine_player.h"
#include "players/probe_player.h"
#include "station/station_app.h"

namespace tavora {

// The station on the audio engine, as both wall-clock front ends run it:
// the sound card ("card") or the null output ("null"), the engine's events
// posted to the rule thread, probe players standing in for voices the engine
// has no room for, the recorder fed from the mix, the cue-point editor's
// preview on a player of its own, and the loop ended when the program ends.
struct EngineStation {
    EngineStation(const Services& services, const std::string& output)
        : post([&loop = services.loop](std::function<void()> fn) { loop.post(std::move(fn)); }),
          engine(output == "null" ? audio::OutputKind::Null : audio::OutputKind::Card, post),
          tap(engine),
          app(services, engine_players(engine, post, probe_players(services.clock, services.loop)),
              live_encoders(tap, services.paths, report_encoder_line)) {
        app.on_end = [&loop = services.loop] { loop.quit(); };
        app.tavora_db.attach_preview(engine_player(engine, post));
        app.attach_air_meter(engine);
    }

    // The encoder's threads report here; one line at a time.
    static void report_encoder_line(const std::string& line) {
        static std::mutex mutex;
        std::lock_guard lock(mutex);
        std::cerr << "tavora: " << line << "\n";
    }

    const audio::Post post;
    audio::Engine engine;
    audio::MixTap tap;
    StationApp app;
};

}  // namespace tavora
