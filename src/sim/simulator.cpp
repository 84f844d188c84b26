#include "sim/simulator.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <ostream>

#include "audio/engine.h"
#include "audio/format.h"
#include "audio/mix_tap.h"
#include "broadcast/encoding/live_encoder.h"

#include "internet/remote_answers.h"
#include "platform/clock.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "platform/virtual_scheduler.h"
#include "players/engine_player.h"
#include "players/offline_drive.h"
#include "players/probe_player.h"
#include "runtime/date_text.h"
#include "runtime/random.h"
#include "runtime/text_file.h"
#include "sim/event_dialogs.h"
#include "sim/event_log.h"
#include "sim/script.h"
#include "station/station_app.h"
#include "station/station_web.h"

namespace tavora {

namespace {

constexpr double kMsPerDay = 86'400'000.0;

bool put_line(const PathMap& paths, const ScriptAction& action) {
    const auto native = paths.ToNative(action.path);
    const std::filesystem::path file = native.status == PathMap::Status::Mapped
                                           ? std::filesystem::path(native.path)
                                           : paths.install_folder() / action.path;
    TextWriter writer(file, action.kind == ScriptAction::Kind::Append ? TextWriter::Mode::Append
                                                                      : TextWriter::Mode::Create);
    writer.write_line(action.text);
    return writer.close();
}

// The control an action presses or fills, or the window it closes, as the
// script wrote it.
std::string control_name(const ScriptAction& action) {
    if (action.kind == ScriptAction::Kind::Close) return action.form;
    std::string name = action.form + "." + action.control;
    if (action.index >= 0) name += "(" + std::to_string(action.index) + ")";
    return name;
}

// A click or set whose control no window has, or a close of a window that
// isn't there, checked before anything runs: "line N: ...", or empty.
std::string unknown_control(StationApp& app, const Script& script) {
    for (const ScriptAction& action : script.actions) {
        if (action.kind == ScriptAction::Kind::Close && !app.form(action.form))
            return "line " + std::to_string(action.line) + ": no window " + action.form;
        if (action.kind != ScriptAction::Kind::Click && action.kind != ScriptAction::Kind::Set)
            continue;
        Form* form = app.form(action.form);
        if (!form || !form->find(action.control, action.index))
            return "line " + std::to_string(action.line) + ": no control " + control_name(action);
    }
    return {};
}

// False when the control refused the action: a missing handler, or a value
// that doesn't fit it.
bool run_action(StationApp& app, EventDialogs& dialogs, const PathMap& paths,
                const ScriptAction& action, std::ostream& out, const Clock& clock) {
    switch (action.kind) {
        case ScriptAction::Kind::CdInsert: {
            const auto native = paths.ToNative(action.path);
            const std::filesystem::path folder = native.status == PathMap::Status::Mapped
                                                     ? std::filesystem::path(native.path)
                                                     : std::filesystem::path(action.path);
            out << "CD " << event_time(clock.Now()) << " insert " << folder.string() << "\n";
            for (const std::string& problem : app.insert_cd(folder))
                out << "CD " << event_time(clock.Now()) << " " << problem << "\n";
            return true;
        }
        case ScriptAction::Kind::CdEject:
            out << "CD " << event_time(clock.Now()) << " eject\n";
            app.eject_cd();
            return true;
        case ScriptAction::Kind::Answer:
            dialogs.Queue(action.text);
            return true;
        case ScriptAction::Kind::Click: {
            Form* form = app.form(action.form);
            return form && form->click(action.control, action.index);
        }
        case ScriptAction::Kind::Set: {
            Form* form = app.form(action.form);
            return form && form->set(action.control, action.index, action.text);
        }
        case ScriptAction::Kind::Close:
            // The window's close box: its own question may keep it open.
            app.form(action.form)->close();
            return true;
        case ScriptAction::Kind::Append:
        case ScriptAction::Kind::Write:
            put_line(paths, action);
            return true;
    }
    return true;
}

}  // namespace

int run_simulation(const SimulationOptions& options, std::ostream& out, std::ostream& err) {
    const Script script = parse_script(options.script);
    if (!script.error.empty()) {
        err << "tavora: script " << script.error << "\n";
        return 2;
    }

    std::string web_problems;
    const WebSettings web_settings = web_settings_for(options.home, options.web, web_problems);
    if (!options.web.empty() && !parse_web_address(options.web)) {
        err << "tavora: " << web_problems;
        return 2;
    }

    VirtualClock clock(options.start);
    VirtualScheduler loop(clock);
    EventDialogs dialogs(clock, out);
    RemoteAnswers answers(dialogs);
    PathMap paths(options.home);
    RecordingLauncher launcher;
    Random random;
    const Services services{clock, loop, answers, paths, launcher, random};

    const audio::Post post = [&loop](std::function<void()> fn) { loop.post(std::move(fn)); };
    std::unique_ptr<audio::Engine> engine;
    if (!options.probe_players) {
        engine = std::make_unique<audio::Engine>(audio::OutputKind::Offline, post);
        if (!options.mix_out.empty() && !engine->write_wav(options.mix_out.string())) {
            err << "tavora: cannot write the mix to " << options.mix_out.string() << "\n";
            return 2;
        }
    }
    const PlayerFactory probes = probe_players(clock, loop);
    // The recorder encodes the offline mix, so a simulated hour gives a real file.
    std::unique_ptr<audio::MixTap> tap;
    EncoderFactory encoders;
    if (engine) {
        tap = std::make_unique<audio::MixTap>(*engine);
        encoders = live_encoders(*tap, paths, [&err](const std::string& line) {
            static std::mutex mutex;
            std::lock_guard lock(mutex);
            err << "tavora: " << line << "\n";
        });
    }
    StationApp app(services, engine ? engine_players(*engine, post, probes) : probes, encoders);
    if (engine) {
        app.tavora_db.attach_preview(engine_player(*engine, post));
        app.attach_air_meter(*engine);
    }
    // A run gives the same mix every time: what is measured before it counts.
    app.measure_in_background = false;
    app.on_end = [&loop] { loop.quit(); };
    app.cd_image = options.cd_image;
    if (const std::string unknown = unknown_control(app, script); !unknown.empty()) {
        err << "tavora: script " << unknown << "\n";
        return 2;
    }

    EventLog log(clock, loop, out, app.station, app.playback);
    StationWeb web(app, services, &answers);
    log.on_air = [&web](int slot, double when) { web.aired(slot, when); };
    log.listen_to(app.selection, options.trace_selection);
    MixLevelMeter meter(log.dead_air(), audio::kRate);
    std::unique_ptr<OfflineDrive> drive;
    if (engine) {
        engine->add_tap(
            [&meter](const float* frames, std::size_t count) { meter.feed(frames, count); });
        drive = std::make_unique<OfflineDrive>(clock, *engine);
    } else {
        log.count_silence_by_players();
    }

    const double end = options.start + options.duration_ms / kMsPerDay;
    if (app.Sub_Main()) {
        if (web_settings.enabled) {
            const std::string error = web.start(web_settings);
            err << "tavora: "
                << (error.empty() ? "request page and API on " + web.url()
                                  : "the web page is off: " + error)
                << "\n";
        }
        for (const ScriptAction& action : script.actions) {
            loop.run_until(std::min(end, options.start + action.at_ms / kMsPerDay));
            if (app.ended() || clock.Now() >= end) break;
            if (!run_action(app, dialogs, paths, action, out, clock)) {
                err << "tavora: script line " << action.line << ": " << control_name(action)
                    << " did not take the action\n";
            }
        }
        if (!app.ended()) loop.run_until(end);
    }
    app.Shutdown();
    web.stop();
    log.end();
    return 0;
}

}  // namespace tavora
