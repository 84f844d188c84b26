#pragma once

// The desktop on a demo station, on the wall clock: the real windows, rules
// and event loop, with probe players or the audio engine's null output; no
// sound card, no window manager. Shared by the screen tests and the desktop's
// benchmarks.

#include <QString>
#include <QWidget>
#include <cstddef>
#include <filesystem>
#include <memory>

#include "audio/engine.h"
#include "platform/clock.h"
#include "platform/dialog_stand_ins.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "players/engine_player.h"
#include "players/probe_player.h"
#include "runtime/random.h"
#include "station/demo_library.h"
#include "station/station_app.h"
#include "store/recordset.h"
#include "test_folder.h"
#include "ui/binder.h"
#include "ui/desktop.h"
#include "ui/qt_dialogs.h"
#include "ui/qt_event_loop.h"

namespace tavora {

// Three generated songs grown to `rows` library rows, in `home`.
inline bool make_demo_station(const std::filesystem::path& home, std::size_t rows) {
    DemoOptions options;
    options.songs = 3;
    const DemoReport demo = make_demo_library(home, SystemClock().Now() - 1, options);
    return demo.error.empty() && grow_demo_library(home, rows).empty();
}

struct DesktopStation {
    enum class Players { Probe, NullOutput };
    // The rules' questions answered by a script, or asked in Qt's dialogs.
    enum class Desk { Scripted, Qt };

    DesktopStation(const std::filesystem::path& home, Players players, Desk desk = Desk::Scripted)
        : paths(home),
          qt_dialogs(paths),
          services{clock, loop,     desk == Desk::Qt ? static_cast<Dialogs&>(qt_dialogs) : dialogs,
                   paths, launcher, random} {
        if (players == Players::NullOutput) {
            const audio::Post post = [this](std::function<void()> fn) { loop.post(std::move(fn)); };
            sound = std::make_unique<audio::Engine>(audio::OutputKind::Null, post);
            app = std::make_unique<StationApp>(
                services, engine_players(*sound, post, probe_players(clock, loop)));
        } else {
            app = std::make_unique<StationApp>(services);
        }
        binder = std::make_unique<ui::Binder>(loop, paths, launcher);
        desktop = std::make_unique<ui::Desktop>(*app, *binder);
        loop.after_event = [this] { binder->sync(); };
    }

    // Start-up to the idle state, as the desktop runs it.
    bool start() {
        bool ok = false;
        loop.run_event([&] { ok = app->Sub_Main(); });
        return ok;
    }

    // A widget of a window by its name; null when it has none.
    template <class W>
    W* widget(const Form& form, const QString& name) {
        QWidget* window =
            form.name() == "QXMain" ? &desktop->main_window() : desktop->widget_of(form);
        return window ? window->findChild<W*>(name) : nullptr;
    }

    SystemClock clock;
    ui::QtEventLoop loop;
    ScriptedDialogs dialogs;
    PathMap paths;
    ui::QtDialogs qt_dialogs;
    RecordingLauncher launcher;
    Random random;
    Services services;
    std::unique_ptr<audio::Engine> sound;
    std::unique_ptr<StationApp> app;
    std::unique_ptr<ui::Binder> binder;
    std::unique_ptr<ui::Desktop> desktop;
};

struct DemoFolder {
    TestFolder folder;
    bool made = make_demo_station(folder.path(), 60);
};

// The desktop on a demo station of its own, 60 rows, with probe players.
struct DemoDesk : DemoFolder, DesktopStation {
    explicit DemoDesk(Desk desk = Desk::Scripted)
        : DesktopStation(folder.path(), Players::Probe, desk) {}

    // The stored field of the row with this key, read from the file.
    std::string stored(const Value& key, const char* field) {
        auto library = Library::open(folder.path() / "qx1.mdb", FileKind::Library).library;
        Recordset rows;
        if (!library || !rows.Open(library, "Recordings1") || !rows.SetBookmark(key)) return "?";
        return rows.Fields(field).text();
    }
};

}  // namespace tavora
