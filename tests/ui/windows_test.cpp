#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <memory>

#include "ui/desktop_station.h"
#include "ui/window_factory.h"
#include "ui_tests.h"

using namespace tavora;

namespace {

// Types into a cell as the operator does: the editor the view opens, the
// text, Enter.
void TypeIntoCell(QTableView& view, const QModelIndex& cell, const QString& text) {
    view.setCurrentIndex(cell);
    view.edit(cell);
    auto* editor = view.viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
}

// A desktop shared by the tests: each works on a window of its own.
std::unique_ptr<DemoDesk> station;

int ColumnOf(const QTableView& view, const QString& head) {
    for (int column = 0; column < view.model()->columnCount(); ++column)
        if (view.model()->headerData(column, Qt::Horizontal).toString() == head) return column;
    return -1;
}

}  // namespace

void WindowsTest::initTestCase() {
    station = std::make_unique<DemoDesk>();
    QVERIFY(station->made && station->start());
}

void WindowsTest::cleanupTestCase() {
    station.reset();
}

// A control renamed in the rules, or a widget renamed in Designer, would
// quietly leave a control without its widget: every control of the hand-made
// windows must find one.
void WindowsTest::everyControlFindsItsWidget() {
    StationApp& app = *station->app;
    for (const char* name : {"frmSetup", "Mailfrm", "Form2", "frmTypeLookup", "frmTavoraDb",
                             "AdWiz", "EncRep", "frmSchedule1", "Advschedule", "Form1"}) {
        const Form* form = app.form(name);
        QVERIFY2(form, name);
        QWidget window;
        QVERIFY2(ui::SetUpLayout(name, window), name);
        QStringList missing;
        for (const auto& entry : form->controls()) {
            const QString widget =
                QString::fromStdString(ui::WidgetName(entry.control->Name, entry.control->Index));
            // A grid's columns are the controls of its name.
            const QString grid = QString::fromStdString(entry.control->Name);
            if (!window.findChild<QObject*>(widget) && !window.findChild<QTableView*>(grid))
                missing << widget;
        }
        QVERIFY2(missing.isEmpty(), qPrintable(QString(name) + ": " + missing.join(", ")));
    }
}

void WindowsTest::chartPlaceTypedInTheGridReachesTheRow() {
    DemoDesk& s = *station;
    Advschedule& screen = s.app->advschedule;
    s.widget<QAction>(s.app->qx_main, "AdvSched")->trigger();
    auto* view = s.widget<QTableView>(screen, "DataGrid1");
    QVERIFY(view && view->isVisible());
    Recordset& rows = screen.datPrimaryRS.Recordset();
    QCOMPARE(view->model()->rowCount(), static_cast<int>(rows.RecordCount()));
    QVERIFY(rows.RecordCount() > 10);
    const int title = ColumnOf(*view, "Title");
    QVERIFY(title >= 0);
    QCOMPARE(view->model()->index(0, title).data().toString().toStdString(),
             rows.Fields("Title").text());

    // A place typed on the fourth row moves the data control there and
    // reaches the grid's edit handler, pending until Update.
    const int t40 = ColumnOf(*view, "T40");
    TypeIntoCell(*view, view->model()->index(3, t40), "7");
    QTRY_COMPARE(screen.DataGrid1(0).Text, std::string("7"));
    QCOMPARE(rows.AbsolutePosition(), 3L);
    QCOMPARE(rows.Fields("T40").number(), 7.0);
    QCOMPARE(view->model()->index(3, t40).data().toString(), QString("7"));
    const Value key = rows.Bookmark();
    QVERIFY(s.stored(key, "T40") != "7");
    QTest::mouseClick(s.widget<QPushButton>(screen, "cmdUpdate"), Qt::LeftButton);
    QCOMPARE(s.stored(key, "T40"), std::string("7"));

    // A place that is no number is the handler's to refuse, with its words.
    const std::size_t told = s.dialogs.shown().size();
    TypeIntoCell(*view, view->model()->index(3, t40), "soon");
    QTRY_COMPARE(s.dialogs.shown().size(), told + 1);
    QCOMPARE(s.dialogs.shown().back().request.text,
             std::string("Enter a chart position from 0 to 200"));

    // A click on a head is the view's: Title sorts by title.
    QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(view->horizontalHeader()->sectionViewportPosition(title) + 5, 5));
    QTRY_COMPARE(screen.datPrimaryRS.RecordSource, std::string("Title Sort"));
    QCOMPARE(view->model()->index(0, title).data().toString().toStdString(),
             rows.Fields("Title").text());
}

void WindowsTest::recordEditorShowsAndSavesTheRecordsFields() {
    DemoDesk& s = *station;
    frmTavoraDb& editor = s.app->tavora_db;
    s.loop.run_event([&] { editor.Form_Load(); });
    Recordset& rows = editor.Data1.Recordset();
    auto* title = s.widget<QLineEdit>(editor, "fldTitle");
    auto* artist = s.widget<QLineEdit>(editor, "fldArtist");
    QVERIFY(title && artist && title->isVisible());
    QVERIFY(!rows.Fields("Title").text().empty());
    QCOMPARE(title->text().toStdString(), rows.Fields("Title").text());

    // The boxes follow the record pointer.
    QTest::mouseClick(s.widget<QPushButton>(editor, "cmdNext"), Qt::LeftButton);
    QCOMPARE(rows.AbsolutePosition(), 1L);
    QCOMPARE(title->text().toStdString(), rows.Fields("Title").text());
    QCOMPARE(artist->text().toStdString(), rows.Fields("Artist").text());

    // An edited Artist is written by Update.
    const Value key = rows.Bookmark();
    artist->selectAll();
    QTest::keyClicks(artist, "The Night Shift");
    QCOMPARE(s.stored(key, "Artist") == "The Night Shift", false);
    QTest::mouseClick(s.widget<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
    QCOMPARE(s.stored(key, "Artist"), std::string("The Night Shift"));
    QCOMPARE(artist->text(), QString("The Night Shift"));

    // A value the field can't take shows the field's again once typed.
    auto* day = s.widget<QLineEdit>(editor, "fldMaxDay");
    const std::string before = rows.Fields("Max Play Day").text();
    day->selectAll();
    QTest::keyClicks(day, "lots");
    QTest::keyClick(day, Qt::Key_Return);
    QCOMPARE(day->text().toStdString(), before);
    QTest::mouseClick(s.widget<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
    QCOMPARE(s.stored(key, "Max Play Day"), before);
}

void WindowsTest::pickingAScheduleRowShowsItsEntry() {
    DemoDesk& s = *station;
    frmSchedule1& schedule = s.app->schedule;
    s.widget<QAction>(s.app->qx_main, "mnu_View_Schedule1")->trigger();
    Recordset& entries = schedule.datPrimaryRS.Recordset();
    // A second entry, so that there is a row to pick.
    s.loop.run_event([&] {
        schedule.cmdAdd_Click();
        schedule.txtFields(0).Text = "Breakfast";
        schedule.chkFields(1).Value = 1;  // the charts, so no category
        schedule.cmdUpdate_Click();
        entries.MoveFirst();
        schedule.datPrimaryRS_Reposition();
    });
    QCOMPARE(entries.RecordCount(), 2L);
    s.loop.run_event([&] { schedule.SSTab1.Value = 1; });
    auto* view = s.widget<QTableView>(schedule, "DataGrid1");
    QVERIFY(view && view->isVisible());
    QCOMPARE(view->model()->rowCount(), 2);
    const int name = ColumnOf(*view, "Name");
    const int other = view->model()->index(0, name).data().toString() == "Always" ? 1 : 0;
    const QString picked = view->model()->index(other, name).data().toString();
    QVERIFY(picked != "Always");

    // The form shows the picked entry, and its rules ran: it can be deleted.
    const QRect cell = view->visualRect(view->model()->index(other, name));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell.center());
    QTRY_COMPARE(entries.AbsolutePosition(), static_cast<long>(other));
    QCOMPARE(QString::fromStdString(schedule.txtFields(0).Text), picked);
    QCOMPARE(schedule.datPrimaryRS.Caption, "Record: " + std::to_string(other + 1));

    // A click on Power switches the picked entry.
    const bool on = entries.Fields("Power").truthy();
    const QRect power = view->visualRect(view->model()->index(other, ColumnOf(*view, "Power")));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, power.center());
    QTRY_COMPARE(entries.Fields("Power").truthy(), !on);
}
