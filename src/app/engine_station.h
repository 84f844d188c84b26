#pragma once

#include <functional>
#include <string>

#include "audio/engine.h"
#include "core/services.h"
#include "platform/event_loop.h"
#include "players/engine_player.h"
#include "players/probe_player.h"
#include "station/station_app.h"

namespace tavora {

// The station on the audio engine, as both wall-clock front ends run it:
// the sound card ("card") or the null output ("null"), the engine's events
// posted to the rule thread, probe players standing in for voices the engine
// has no room for, and the loop ended when the program ends.
struct EngineStation {
    EngineStation(const Services& services, const std::string& output)
        : post([&loop = services.loop](std::function<void()> fn) { loop.post(std::move(fn)); }),
          engine(output == "null" ? audio::OutputKind::Null : audio::OutputKind::Card, post),
          app(services,
              engine_players(engine, post, probe_players(services.clock, services.loop))) {
        app.on_end = [&loop = services.loop] { loop.quit(); };
    }

    const audio::Post post;
    audio::Engine engine;
    StationApp app;
};

}  // namespace tavora
