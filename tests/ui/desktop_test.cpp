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
#include "ui/desktop_station.h"
#include "ui_tests.h"

using namespace tavora;

namespace {

// The demo desktop with the aired titles as the event lines tell them.
struct TestStation : DemoDesk {
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

    std::ostringstream aired;
    EventLog log{clock, loop, aired, app->station, app->playback};
};

std::unique_ptr<TestStation> station;

}  // namespace

void DesktopTest::initTestCase() {
    station = std::make_unique<TestStation>();
    QVERIFY(station->made && station->start());
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
            if (title.empty() || !line->text().toStdString().ends_with(title)) return false;
        }
        return true;
    };
    QTRY_VERIFY_WITH_TIMEOUT(set_shown(), 10000);
    // The song on air by now: on a slow machine, that may be the next one.
    const QString on_air = QString::fromStdString(s.aired_titles().back());
    QVERIFY(s.desktop->main_window().windowTitle().endsWith(on_air));
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

    // Only the pressed row is asked for, and its count shows it.
    auto library = Library::open(s.folder.path() / "qx1.mdb", FileKind::Library).library;
    Recordset rows;
    QVERIFY(library && rows.Open(library, "SELECT * FROM Recordings1 WHERE Sel >= 1"));
    QCOMPARE(rows.RecordCount(), 1L);
    QCOMPARE(rows.Fields("Title").text().substr(0, 28), title);
    QCOMPARE(s.widget<QPushButton>(s.app->request, "RD_3")->text().toStdString(),
             rows.Fields("Sel").text());
}

void DesktopTest::onAirPopUpCountsDown() {
    TestStation& s = *station;
    // The demo's songs are short: the pop-up comes up before each mix and
    // counts the seconds to it, SOON, or N O W the seconds left of an intro or
    // a talk gap.
    const Form& form = s.app->playback.on_air;
    const auto count = [&] {
        const QString phase = s.widget<QLabel>(form, "Label1")->text();
        if (!s.desktop->widget_of(form)->isVisible() || (phase != "SOON" && phase != "N O W"))
            return 0;
        auto* value = s.widget<QLabel>(form, phase == "SOON" ? "LblInValue" : "LblLeftValue");
        return value->isVisible() ? value->text().toInt() : 0;
    };
    // A count caught with a second to go may end with its phase; one of two goes on.
    QTRY_VERIFY_WITH_TIMEOUT(count() >= 2, 60000);
    const int first = count();
    QTRY_VERIFY_WITH_TIMEOUT(count() > 0 && count() < first, 3000);
}

void DesktopTest::menuItemsOpenTheirWindows() {
    TestStation& s = *station;
    // Every item has its window now, the CD player's last.
    QVERIFY(s.widget<QAction>(s.app->qx_main, "CD_PLYR")->isEnabled());
    QVERIFY(s.desktop->widget_of(s.app->cd_player) != nullptr);
    s.widget<QAction>(s.app->qx_main, "mnu_Options_Setup")->trigger();
    QVERIFY(s.desktop->widget_of(s.app->setup)->isVisible());
    s.widget<QAction>(s.app->qx_main, "About_QX")->trigger();
    QVERIFY(s.desktop->widget_of(s.app->about)->isVisible());
    QTest::mouseClick(s.widget<QPushButton>(s.app->about, "cmdOK"), Qt::LeftButton);
    QVERIFY(!s.desktop->widget_of(s.app->about)->isVisible());
}

void DesktopTest::missingLibraryIsAskedForAndExitEndsTheApplication() {
    // The library moved away: start-up asks for it in an input box,
    // takes the answer, says so, and the desktop comes up on it.
    DemoDesk s(DesktopStation::Desk::Qt);
    QVERIFY(s.made);
    std::filesystem::rename(s.folder.path() / "qx1.mdb", s.folder.path() / "moved.mdb");
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

    // Exit ends the application.
    s.app->on_end = [&s] { s.loop.quit(); };
    QTimer::singleShot(0,
                       [&s] { s.loop.run_event([&s] { s.app->qx_main.click("mnu_File_Exit"); }); });
    // Should the exit not end the loop, this one does, with another code.
    QTimer::singleShot(10'000, [] { QCoreApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(s.app->ended());
}
