#include <QAction>
#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <memory>
#include <regex>
#include <sstream>

#include "sim/event_log.h"
#include "store/recordset.h"
#include "test_folder.h"
#include "ui/desktop_station.h"
#include "ui_tests.h"

using namespace tavora;

namespace {

// The desktop on a small demo library (60 rows), with probe players, and the
// aired titles as the event lines tell them.
struct TestStation {
    TestStation()
        : made(make_demo_station(folder.path(), 60)),
          desk(folder.path(), DesktopStation::Players::Probe),
          app(desk.app),
          desktop(desk.desktop),
          log(desk.clock, desk.loop, aired, app->station, app->playback) {
        ok = made && desk.start();
    }

    template <class W>
    W* widget(const Form& form, const QString& name) {
        return desk.widget<W>(form, name);
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

    TestFolder folder;
    bool made;
    DesktopStation desk;
    std::unique_ptr<StationApp>& app;
    std::unique_ptr<ui::Desktop>& desktop;
    std::ostringstream aired;
    EventLog log;
    bool ok = false;
};

std::unique_ptr<TestStation> station;

}  // namespace

void DesktopTest::initTestCase() {
    station = std::make_unique<TestStation>();
    QVERIFY(station->ok);
    QVERIFY(station->desktop->main_window().isVisible());
    QVERIFY(station->widget<QWidget>(station->app->request, "Frame1")->isVisible());
}

void DesktopTest::cleanupTestCase() {
    station.reset();
}

void DesktopTest::runFillsTheViewerWithTheAiredTitles() {
    TestStation& s = *station;
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
    // The status bar's counters are the rules' panel texts.
    const std::string played = s.app->qx_main.Panel(5).Text;
    QVERIFY(!played.empty());
    QCOMPARE(s.widget<QLineEdit>(s.app->qx_main, "Panel_5")->text().toStdString(), played);
}

void DesktopTest::rowPressRaisesTheRequest() {
    TestStation& s = *station;
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
    TestStation& s = *station;
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
    TestStation& s = *station;
    // Every item has its window now, the CD player's last.
    QVERIFY(s.widget<QAction>(s.app->qx_main, "CD_PLYR")->isEnabled());
    QVERIFY(s.desktop->widget_of(s.app->cd_player) != nullptr);
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

void DesktopTest::missingLibraryIsAskedFor() {
    // The library moved away: start-up asks for it in the Part's input box,
    // takes the answer, says so, and the desktop comes up on it.
    TestFolder folder;
    QVERIFY(make_demo_station(folder.path(), 60));
    std::filesystem::rename(folder.path() / "qx1.mdb", folder.path() / "moved.mdb");
    DesktopStation s(folder.path(), DesktopStation::Players::Probe, DesktopStation::Desk::Qt);
    QString asked, told;
    // Each dialog is answered from the loop it runs, once it is up.
    QTimer answer;
    answer.setInterval(20);
    QObject::connect(&answer, &QTimer::timeout, [&] {
        QWidget* up = QApplication::activeModalWidget();
        if (auto* box = qobject_cast<QInputDialog*>(up)) {
            asked = box->windowTitle();
            box->setTextValue("c:\\tavora\\moved.mdb");
            box->accept();
        } else if (auto* said = qobject_cast<QMessageBox*>(up)) {
            told = said->text();
            said->accept();
        }
    });
    answer.start();
    QVERIFY(s.start());
    QCOMPARE(asked, QString("TQXMS DATABASE MISSING!!!"));
    QCOMPARE(told, QString("Your Database hase been changed to: c:\\tavora\\moved.mdb"));
    QCOMPARE(s.app->station.Act_Db, std::string("c:\\tavora\\moved.mdb"));
    QVERIFY(s.widget<QWidget>(s.app->request, "Frame1")->isVisible());
}

void DesktopTest::exitEndsTheApplication() {
    TestFolder folder;
    QVERIFY(make_demo_station(folder.path(), 60));
    DesktopStation s(folder.path(), DesktopStation::Players::Probe);
    s.app->on_end = [&s] { s.loop.quit(); };
    QVERIFY(s.start());
    QTimer::singleShot(0,
                       [&s] { s.loop.run_event([&s] { s.app->qx_main.click("mnu_File_Exit"); }); });
    // Should the exit not end the loop, this one does, with another code.
    QTimer::singleShot(10'000, [] { QCoreApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(s.app->ended());
}
