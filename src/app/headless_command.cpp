#include "headless_command.h"

#include <atomic>
#include <csignal>
#include <iostream>

#include "engine_station.h"
#include "platform/clock.h"
#include "platform/file_ops.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "platform/real_time_loop.h"
#include "runtime/random.h"
#include "sim/event_dialogs.h"
#include "sim/event_log.h"

namespace tavora {

namespace {

std::atomic<bool> stop_requested{false};

extern "C" void request_stop(int) {
    stop_requested = true;
}

void catch_stop_signals() {
    struct sigaction action {};
    action.sa_handler = request_stop;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

}  // namespace

int run_headless(const std::optional<std::string>& home_option, const std::string& output) {
    const auto home = ResolveInstallFolder(home_option);
    if (!files::Exists(home / "Setup.mdb")) {
        std::cerr << "tavora: no station is installed in " << home.string()
                  << "\nMake one with: tavora --install --home " << home.string() << "\n";
        return 2;
    }

    SystemClock clock;
    RealTimeLoop loop;
    // Each event line goes out as it happens, also into a pipe or a file.
    std::cout.setf(std::ios::unitbuf);
    EventDialogs dialogs(clock, std::cout);
    PathMap paths(home);
    SystemLauncher launcher;
    Random random;
    const Services services{clock, loop, dialogs, paths, launcher, random};

    EngineStation station(services, output);
    if (!station.engine.note().empty()) std::cerr << "tavora: " << station.engine.note() << "\n";
    StationApp& app = station.app;
    EventLog log(clock, loop, std::cout, app.station, app.playback);
    log.listen_to(app.selection, false);
    log.count_silence_by_players();
    catch_stop_signals();
    // Signals only raise a flag; the shutdown itself runs on the rule thread.
    auto watch = loop.CreateTimer([&app] {
        if (stop_requested) app.Shutdown();
    });
    watch->SetInterval(200);
    watch->SetEnabled(true);

    std::cerr << "tavora: starting the station in " << home.string() << "\n";
    if (!app.Sub_Main()) {
        if (app.ended()) return 0;
        std::cerr << "tavora: the library could not be opened; start the desktop station to "
                     "choose another from the Setup screen\n";
        return 1;
    }
    std::cerr << "tavora: idle, library " << app.station.Act_Db << "\n";
    loop.run();
    log.end();
    std::cerr << "tavora: stopped\n";
    return 0;
}

}  // namespace tavora
