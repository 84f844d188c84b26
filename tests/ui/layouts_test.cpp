#include <QTableView>
#include <QTest>

#include "test_folder.h"
#include "ui/desktop_station.h"
#include "ui/window_factory.h"
#include "ui_tests.h"

using namespace tavora;

// A control renamed in the rules, or a widget renamed in Designer, would
// quietly leave a control without its widget: every control of the hand-made
// windows must find one.
void LayoutsTest::everyControlFindsItsWidget() {
    TestFolder folder;
    DesktopStation station(folder.path(), DesktopStation::Players::Probe);
    StationApp& app = *station.app;
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
