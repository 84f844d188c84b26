#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <memory>
#include <regex>
#include <sstream>

#include "platform/clock.h"
#include "platform/dialog_stand_ins.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "runtime/random.h"
#include "sim/event_log.h"
#include "station/demo_library.h"
#include "station/station_app.h"
#include "store/recordset.h"
#include "test_folder.h"
#include "ui/binder.h"
#include "ui/desktop.h"
#include "ui/qt_event_loop.h"
#include "ui_tests.h"

using namespace tavora;

namespace {

// The desktop on a small demo library (three generated songs grown to 60
// rows), with probe players on the wall clock: the real windows, rules and
// event loop, without a sound card.
struct DesktopStation {
    DesktopStation() : paths(folder.path()) {
        DemoOptions options;
        options.songs = 3;
        const DemoReport demo = make_demo_library(folder.path(), clock.Now() - 1, options);
        if (!demo.error.empty() || !grow_demo_library(folder.path(), 60).empty()) ok = false;
        app = std::make_unique<StationApp>(services);
        binder = std::make_unique<ui::Binder>(loop, paths, launcher);
        desktop = std::make_unique<ui::Desktop>(*app, *binder);
        loop.after_event = [this] { binder->sync(); };
        log = std::make_unique<EventLog>(clock, loop, aired, app->station, app->playback);
        loop.run_event([this] { ok = ok && app->Sub_Main(); });
    }

    template <class W>
    W* widget(const Form& form, const QString& name) {
        QWidget* window =
            form.name() == "QXMain" ? &desktop->main_window() : desktop->widget_of(form);
        return window ? window->findChild<W*>(name) : nullptr;
    }

    // The titles of the AIR lines so far.
    std::vector<std::string> aired_titles() const {
        std::vector<std::string> titles;
        std::istringstream in(aired.str());
        const std::regex air("^AIR .* \"(.*)\"$");
        std::smatch m;
        for (std::string line; std::getline(in, line);)
            if (std::regex_match(line, m, air)) titles.push_back(m[1]);
        return titles;
    }

    bool ok = true;
    TestFolder folder;
    SystemClock clock;
    ui::QtEventLoop loop;
    ScriptedDialogs dialogs;
    PathMap paths;
    RecordingLauncher launcher;
    Random random;
    Services services{clock, loop, dialogs, paths, launcher, random};
    std::ostringstream aired;
    std::unique_ptr<StationApp> app;
    std::unique_ptr<ui::Binder> binder;
    std::unique_ptr<ui::Desktop> desktop;
    std::unique_ptr<EventLog> log;
};

std::unique_ptr<DesktopStation> station;

}  // namespace

void DesktopTest::initTestCase() {
    station = std::make_unique<DesktopStation>();
    QVERIFY(station->ok);
    QVERIFY(station->desktop->main_window().isVisible());
    QVERIFY(station->widget<QWidget>(station->app->request, "Frame1")->isVisible());
}

void DesktopTest::cleanupTestCase() {
    station.reset();
}

void DesktopTest::runFillsTheViewerWithTheAiredTitles() {
    DesktopStation& s = *station;
    s.app->station.Live_Pop = 1;  // the on-air pop-up, for its test below
    auto* run = s.widget<QPushButton>(s.app->request, "cmdClose");
    QVERIFY(run);
    QCOMPARE(run->text(), QString("&Run"));
    QTest::mouseClick(run, Qt::LeftButton);

    QTRY_VERIFY_WITH_TIMEOUT(!s.aired_titles().empty(), 10000);
    QVERIFY(s.desktop->widget_of(s.app->viewer)->isVisible());
    const std::string first = s.aired_titles().front();
    QCOMPARE(s.widget<QLabel>(s.app->viewer, "Label1_1")->text().toStdString(), first);
    // The whole set comes on screen as the rules load it: "QXn title".
    const auto set_shown = [&s] {
        for (int slot = 2; slot <= 6; ++slot) {
            const std::string& title = s.app->station.Slot_Title[slot];
            const auto* line = s.widget<QLabel>(s.app->viewer, QString("Label1_%1").arg(slot));
            const std::string text = line->text().toStdString();
            if (title.empty() || text.size() < title.size() ||
                text.compare(text.size() - title.size(), title.size(), title) != 0) {
                return false;
            }
        }
        return true;
    };
    QTRY_VERIFY_WITH_TIMEOUT(set_shown(), 10000);
    QVERIFY(s.desktop->main_window().windowTitle().toStdString().find(first) != std::string::npos);
}

void DesktopTest::rowPressRaisesTheRequest() {
    DesktopStation& s = *station;
    auto* row = s.widget<QPushButton>(s.app->request, "RB_3");
    QVERIFY(row && row->isVisible());
    const std::string title = row->text().toStdString();
    QVERIFY(!title.empty());
    QTest::mouseClick(row, Qt::LeftButton);

    auto library = Library::open(s.folder.path() / "qx1.mdb", FileKind::Library).library;
    QVERIFY(library);
    Recordset rows;
    QVERIFY(rows.Open(library, "Recordings1"));
    int found = 0;
    std::string sel;
    for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext()) {
        if (rows.Fields("Title").text().substr(0, 28) != title) continue;
        ++found;
        sel = rows.Fields("Sel").text();
    }
    QCOMPARE(found, 1);
    QVERIFY(std::stod(sel) >= 1);
    // The row's count shows it.
    QCOMPARE(s.widget<QPushButton>(s.app->request, "RD_3")->text(), QString::fromStdString(sel));
}

void DesktopTest::onAirPopUpCountsDown() {
    DesktopStation& s = *station;
    // The demo's songs are short: the pop-up comes up before each mix and
    // counts the seconds to it.
    QWidget* pop_up = s.desktop->widget_of(s.app->playback.on_air);
    QTRY_VERIFY_WITH_TIMEOUT(pop_up->isVisible(), 30000);
    auto* phase = s.widget<QLabel>(s.app->playback.on_air, "Label1");
    const bool soon = phase->text() == "SOON";
    QVERIFY(soon || phase->text() == "N O W");
    auto* count = s.widget<QLabel>(s.app->playback.on_air, soon ? "LblInValue" : "LblLeftValue");
    QVERIFY(count->isVisible());
    const int first = count->text().toInt();
    QVERIFY(first > 0);
    QTRY_VERIFY_WITH_TIMEOUT(count->text().toInt() < first, 3000);
    QVERIFY(pop_up->isVisible());
}

void DesktopTest::menuItemsWithoutAWindowAreGreyed() {
    DesktopStation& s = *station;
    // Every item has its window now, the CD player's last.
    QVERIFY(s.widget<QAction>(s.app->qx_main, "CD_PLYR")->isEnabled());
    // Its layout has a widget for every control the rules drive.
    QWidget* cd = s.desktop->widget_of(s.app->cd_player);
    QVERIFY(cd != nullptr);
    for (const std::string& name : s.app->cd_player.control_names())
        QVERIFY2(cd->findChild<QWidget*>(QString::fromStdString(name)), name.c_str());
    auto* setup = s.widget<QAction>(s.app->qx_main, "mnu_Options_Setup");
    QVERIFY(setup->isEnabled());
    setup->trigger();
    QVERIFY(s.desktop->widget_of(s.app->setup)->isVisible());
    auto* about = s.widget<QAction>(s.app->qx_main, "About_QX");
    about->trigger();
    QVERIFY(s.desktop->widget_of(s.app->about)->isVisible());
    QTest::mouseClick(s.widget<QPushButton>(s.app->about, "cmdOK"), Qt::LeftButton);
    QVERIFY(!s.desktop->widget_of(s.app->about)->isVisible());
}
