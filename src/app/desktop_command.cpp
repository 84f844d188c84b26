#include "desktop_command.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>
#include <QIcon>
#include <QInputDialog>
#include <QMessageBox>
#include <QStyleFactory>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "engine_station.h"
#include "internet/remote_answers.h"
#include "platform/clock.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "runtime/random.h"
#include "sim/event_log.h"
#include "station/station_app.h"
#include "station/station_web.h"
#include "stop_signals.h"
#include "ui/binder.h"
#include "ui/desktop.h"
#include "ui/qt_dialogs.h"
#include "ui/qt_event_loop.h"

namespace tavora {

namespace {

void save(QWidget* window, const std::filesystem::path& file) {
    if (!window || !window->isVisible()) return;
    if (window->grab().save(QString::fromStdString(file.string()))) {
        std::cout << "tavora: saved " << file.string() << std::endl;
    } else {
        std::cerr << "tavora: could not save " << file.string() << "\n";
    }
}

// A new disc asks for its titles. The tour answers as an operator in a hurry
// would: it names the disc, then leaves the first track blank and skips the
// rest, so the tracks keep their default names.
void answer_disc_questions() {
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* input = qobject_cast<QInputDialog*>(modal)) {
        const bool disc = input->labelText() == "Enter Title For This CD";
        input->setTextValue(disc ? "Demo Disc" : "");
        input->accept();
    } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        if (QAbstractButton* yes = box->button(QMessageBox::Yes)) yes->click();
    }
}

// The screenshot run: the station starts, a listener asks for a song, and
// after a minute of play each main window is saved as a PNG.
void take_screenshots(StationApp& app, ui::Desktop& desktop, ui::QtEventLoop& loop,
                      const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    // A demo station starts by itself; a second Run would ask to restart.
    if (app.station.Run_Mode != 2) loop.run_event([&app] { app.qx_main.click("mnu_File_Run"); });
    QTimer::singleShot(20'000,
                       [&app, &loop] { loop.run_event([&app] { app.request.click("RB", 4); }); });
    QTimer::singleShot(60'000, [&app, &desktop, &loop, folder] {
        const auto shot = [&](Form& form, const char* menu, const char* file) {
            if (menu) loop.run_event([&app, menu] { app.qx_main.click(menu); });
            QApplication::processEvents();
            save(desktop.window_of(form), folder / file);
        };
        save(&desktop.main_window(), folder / "desktop.png");
        shot(app.request, nullptr, "jukebox.png");
        shot(app.viewer, nullptr, "now-playing.png");
        shot(app.playback.on_air, nullptr, "on-air.png");
        shot(app.setup, "mnu_Options_Setup", "setup.png");
        shot(app.tavora_db, "Mnu_Find", "program-director.png");
        shot(app.schedule, "mnu_View_Schedule1", "schedule.png");
        loop.run_event([&app] {
            app.schedule.SSTab1.Value = 1;
            app.schedule.SSTab1_Click();
        });
        shot(app.schedule, nullptr, "schedule-grid.png");
        shot(app.advschedule, "AdvSched", "advanced-scheduler.png");
        // The CD window reads the disc at its timer's next tick.
        loop.run_event([&app] { app.qx_main.click("CD_PLYR"); });
        QTimer answers;
        QObject::connect(&answers, &QTimer::timeout, &answer_disc_questions);
        answers.start(250);
        QEventLoop settle;
        QTimer::singleShot(2500, &settle, &QEventLoop::quit);
        settle.exec();
        answers.stop();
        shot(app.cd_player, nullptr, "cd-player.png");
        shot(app.system_info, "sysinf", "system-info.png");
        shot(app.about, "About_QX", "about.png");
        loop.run_event([&app] { app.Shutdown(); });
    });
}

}  // namespace

bool display_available() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        const char* value = std::getenv(name);
        if (value && *value) return true;
    }
    return false;
}

int run_desktop(int argc, char** argv, const std::optional<std::string>& home_option,
                const std::string& output, const std::string& web_option,
                const std::string& screenshots) {
    QApplication qt(argc, argv);
    QApplication::setApplicationName("Tavora Music System");
    QApplication::setDesktopFileName("tavora");
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setWindowIcon(QIcon::fromTheme("audio-x-generic"));

    const auto home = ResolveInstallFolder(home_option);
    SystemClock clock;
    ui::QtEventLoop loop;
    PathMap paths(home);
    ui::QtDialogs desk(paths);
    RemoteAnswers dialogs(desk);
    SystemLauncher launcher;
    Random random;
    const Services services{clock, loop, dialogs, paths, launcher, random};
    std::string web_problems;
    const WebSettings web_settings = web_settings_for(home, web_option, web_problems);
    if (!web_problems.empty()) std::cerr << "tavora: " << web_problems;

    EngineStation station(services, output);
    const audio::Engine& engine = station.engine;
    StationApp& app = station.app;
    app.system_info.front_end_lines = {
        std::string("Qt ") + qVersion(),
        "Audio output: " +
            std::string(engine.note().empty()
                            ? (output == "null" ? "none (null output)" : "sound card")
                            : "none (null output): " + engine.note()),
    };

    ui::Binder binder(loop, paths, launcher);
    ui::Desktop desktop(app, binder);
    loop.after_event = [&binder] { binder.sync(); };
    desk.before_show = [&binder] { binder.sync(); };
    desk.parent = &desktop.main_window();

    // The web page's now-playing list hears the AIR events; the lines
    // themselves go nowhere on the desktop.
    std::ostream nowhere(nullptr);
    EventLog log(clock, loop, nowhere, app.station, app.playback);
    StationWeb web(app, services, &dialogs);
    log.on_air = [&web](int slot, double when) { web.aired(slot, when); };

    if (!engine.note().empty()) desk.MsgBox(engine.note(), Buttons::OKOnly, "Sound Card");
    // Mid-run the station plays on, so the word doesn't wait for an answer.
    station.engine.on_card_lost = [&app, &desktop](const std::string& note) {
        std::cerr << "tavora: " << note << "\n";
        app.system_info.front_end_lines.back() = "Audio output: none (null output): " + note;
        auto* box =
            new QMessageBox(QMessageBox::Warning, "Sound Card", QString::fromStdString(note),
                            QMessageBox::Ok, &desktop.main_window());
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
    };
    // A stop signal ends the station on the rule thread as the headless one
    // does. A question on the screen holds that thread: it is closed first,
    // which answers it as its close box does.
    catch_stop_signals();
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&watch, &loop, &app] {
        if (!stop_requested()) return;
        if (QWidget* question = QApplication::activeModalWidget()) {
            question->close();
            return;
        }
        watch.stop();
        loop.run_event([&app] { app.Shutdown(); });
    });
    watch.start(200);
    std::cerr << "tavora: starting the station in " << home.string() << "\n";
    bool started = false;
    loop.run_event([&] { started = app.Sub_Main(); });
    // Ended before the desktop ran: a question answered so, or a stop
    // signal while one was up.
    if (app.ended()) {
        std::cerr << "tavora: stopped\n";
        return 0;
    }
    if (started && web_settings.enabled) {
        const std::string error = web.start(web_settings);
        if (error.empty())
            std::cerr << "tavora: request page and API on " << web.url() << "\n";
        else
            std::cerr << "tavora: the web page is off: " << error << "\n";
    }
    if (started) std::cerr << "tavora: idle, library " << app.station.Act_Db << "\n";
    if (!screenshots.empty()) take_screenshots(app, desktop, loop, screenshots);
    const int status = QApplication::exec();
    web.stop();
    std::cerr << "tavora: stopped\n";
    return status;
}

}  // namespace tavora
