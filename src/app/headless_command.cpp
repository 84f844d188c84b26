#include "headless_command.h"

#include <filesystem>
#include <iostream>
#include <mutex>
#include <optional>

#include "engine_station.h"
#include "installed_station.h"
#include "internet/remote_answers.h"
#include "platform/clock.h"
#include "platform/file_ops.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "platform/real_time_loop.h"
#include "runtime/random.h"
#include "sim/event_dialogs.h"
#include "sim/event_log.h"
#include "station/station_web.h"
#include "stop_signals.h"

namespace tavora {

namespace {

// The profile as given, or by its name in the install folder, with or without
// its ending.
std::optional<std::filesystem::path> recorder_profile(const std::filesystem::path& home,
                                                      const std::string& name) {
    for (const std::filesystem::path& file :
         {std::filesystem::path(name), home / name, home / (name + ".asd")}) {
        if (files::Exists(file)) return file;
    }
    return std::nullopt;
}

}  // namespace

int run_headless(const std::optional<std::string>& home_option, const std::string& output,
                 const std::string& record, const std::string& web_option,
                 const std::string& cd_image) {
    const auto home = ResolveInstallFolder(home_option);
    if (!station_installed(home, std::cerr)) return 2;
    std::string web_problems;
    const WebSettings web_settings = web_settings_for(home, web_option, web_problems);
    if (!web_problems.empty()) {
        std::cerr << "tavora: " << web_problems;
        if (!web_option.empty() && !parse_web_address(web_option)) return 2;
    }

    SystemClock clock;
    RealTimeLoop loop;
    // Each event line goes out as it happens, also into a pipe or a file.
    std::cout.setf(std::ios::unitbuf);
    EventDialogs desk(clock, std::cout);
    RemoteAnswers dialogs(desk);
    PathMap paths(home);
    SystemLauncher launcher;
    Random random;
    const Services services{clock, loop, dialogs, paths, launcher, random};

    EngineStation station(services, output);
    if (!station.engine.note().empty()) std::cerr << "tavora: " << station.engine.note() << "\n";
    station.engine.on_card_lost = [](const std::string& note) {
        std::cerr << "tavora: " << note << "\n";
    };
    StationApp& app = station.app;
    app.cd_image = cd_image;
    EventLog log(clock, loop, std::cout, app.station, app.playback);
    StationWeb web(app, services, &dialogs);
    log.on_air = [&web](int slot, double when) { web.aired(slot, when); };
    log.listen_to(app.selection, false);
    log.count_silence_by_players();
    catch_stop_signals();
    // Signals only raise a flag; the shutdown itself runs on the rule thread.
    auto watch = loop.CreateTimer([&app] {
        if (stop_requested()) app.Shutdown();
    });
    watch->SetInterval(200);
    watch->SetEnabled(true);

    std::cerr << "tavora: starting the station in " << home.string() << "\n";
    if (!record.empty()) {
        const auto profile = recorder_profile(home, record);
        if (!profile) {
            std::cerr << "tavora: no recorder profile " << record << " (a .asd file)\n";
            return 2;
        }
        // Before the players run, as the recorder window asks.
        app.recorder.Form_Load();
        if (!app.recorder.Start_Profile(profile->string())) return 1;
    }
    if (!app.Sub_Main()) {
        if (app.ended()) return 0;
        std::cerr << "tavora: the library could not be opened; start the desktop station to "
                     "choose another from the Setup screen\n";
        return 1;
    }
    std::cerr << "tavora: idle, library " << app.station.Act_Db << "\n";
    if (web_settings.enabled) {
        const std::string error = web.start(web_settings);
        if (error.empty())
            std::cerr << "tavora: request page and API on " << web.url() << "\n";
        else
            std::cerr << "tavora: the web page is off: " << error << "\n";
    }
    loop.run();
    web.stop();
    log.end();
    std::cerr << "tavora: stopped\n";
    return 0;
}

}  // namespace tavora
