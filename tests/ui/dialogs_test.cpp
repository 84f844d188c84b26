#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <thread>

#include "platform/path_map.h"
#include "test_folder.h"
#include "ui/qt_dialogs.h"
#include "ui/qt_event_loop.h"
#include "ui_tests.h"

using namespace tavora;

namespace {

// Runs `act` on the dialog that the next Ask shows, once it is up. When none
// of that kind comes up, whatever modal is open is closed, so that the Ask
// returns and the test fails instead of waiting forever.
template <class D>
void WhenShown(std::function<void(D&)> act) {
    QTimer::singleShot(0, [act] {
        for (int tries = 0; tries < 1000; ++tries) {
            if (auto* dialog = qobject_cast<D*>(QApplication::activeModalWidget())) {
                act(*dialog);
                return;
            }
            QTest::qWait(10);
        }
        if (QWidget* other = QApplication::activeModalWidget()) other->close();
        QFAIL("no dialog of the expected kind came up");
    });
}

// Qt's dialogs on a station folder of their own.
struct Desk {
    TestFolder folder;
    std::filesystem::path home = folder.path() / "tavora";
    PathMap paths{home};
    ui::QtDialogs dialogs{paths};
};

}  // namespace

void DialogsTest::messageBoxShowsItsWordsAndTheCloseBoxAnswers() {
    Desk d;
    QStringList seen;  // the title, the text, the buttons, the default
    WhenShown<QMessageBox>([&](QMessageBox& box) {
        QStringList buttons;
        for (QAbstractButton* button : box.buttons())
            buttons << button->text().remove('&');
        buttons.sort();
        seen << box.windowTitle() << box.text() << buttons.join(",")
             << box.defaultButton()->text().remove('&');
        box.button(QMessageBox::Ok)->click();
    });
    QCOMPARE(d.dialogs.MsgBox("Pause?", Buttons::OKCancel, "Warning", Icon::Exclamation, 2),
             Answer::OK);
    QCOMPARE(seen, QStringList({"Warning", "Pause?", "Cancel,OK", "Cancel"}));

    // The close box is Cancel, or without a Cancel the default button. No
    // title: the station's name.
    WhenShown<QMessageBox>([](QMessageBox& box) { box.close(); });
    QCOMPARE(d.dialogs.MsgBox("Save?", Buttons::YesNoCancel, "Question", Icon::Question, 1),
             Answer::Cancel);
    QString title;
    WhenShown<QMessageBox>([&title](QMessageBox& box) {
        title = box.windowTitle();
        box.close();
    });
    QCOMPARE(d.dialogs.MsgBox("Exit now?", Buttons::YesNo, "", Icon::None, 2), Answer::No);
    QCOMPARE(title, QString("Tavora Music System"));
    WhenShown<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QCOMPARE(d.dialogs.MsgBox("Retry?", Buttons::AbortRetryIgnore, "", Icon::None, 2),
             Answer::Retry);
}

void DialogsTest::inputBoxGivesTextOrEmpty() {
    Desk d;
    QStringList seen;  // the default and the prompt
    WhenShown<QInputDialog>([&](QInputDialog& box) {
        seen << box.textValue() << box.labelText();
        box.setTextValue("c:\\tavora\\other.mdb");
        box.accept();
    });
    QCOMPARE(d.dialogs.InputBox("Path?", "Missing", "c:\\tavora\\qx1.mdb"),
             std::string("c:\\tavora\\other.mdb"));
    QCOMPARE(seen, QStringList({"c:\\tavora\\qx1.mdb", "Path?"}));

    WhenShown<QInputDialog>([](QInputDialog& box) { box.close(); });
    QCOMPARE(d.dialogs.InputBox("Name?", "", "kept"), std::string());
}

void DialogsTest::fileDialogHandsBackTheStoredForm() {
    Desk d;
    d.folder.Write("tavora/qxl1124.log");
    QStringList seen;  // the folder and the filters
    WhenShown<QFileDialog>([&](QFileDialog& box) {
        seen << box.directory().absolutePath() << box.nameFilters().join(";;");
        box.selectFile(QString::fromStdString((d.home / "qxl1124.log").string()));
        QMetaObject::invokeMethod(&box, "accept");
    });
    QCOMPARE(d.dialogs.OpenFile("Tavora Logfile Search", "TQX Log Files|*.log", "c:\\tavora"),
             std::string("c:\\tavora\\qxl1124.log"));
    QCOMPARE(seen, QStringList({QString::fromStdString(d.home.string()), "TQX Log Files (*.log)"}));

    WhenShown<QFileDialog>([](QFileDialog& box) { box.reject(); });
    QCOMPARE(d.dialogs.OpenFile("Tavora Logfile Search", "TQX Log Files|*.log", "c:\\tavora"),
             std::string());
}

void DialogsTest::timerWaitsWhileADialogIsOpen() {
    Desk d;
    ui::QtEventLoop loop;
    std::vector<std::string> order;
    auto timer = loop.CreateTimer([&] { order.push_back("tick"); });
    timer->SetInterval(20);

    // The handler asks a question; the timer falls due meanwhile, and fires
    // only once the handler has ended.
    WhenShown<QMessageBox>([&](QMessageBox& box) {
        QTest::qWait(120);
        order.push_back("answered");
        box.button(QMessageBox::Ok)->click();
    });
    timer->SetEnabled(true);
    loop.run_event([&] {
        d.dialogs.MsgBox("Wait");
        order.push_back("handler done");
    });
    QTRY_VERIFY_WITH_TIMEOUT(order.size() >= 3 && order.back() == "tick", 2000);
    QCOMPARE(order[0], std::string("answered"));
    QCOMPARE(order[1], std::string("handler done"));

    // Work posted from another thread runs on this one.
    std::thread::id ran_on;
    std::thread poster([&] { loop.post([&] { ran_on = std::this_thread::get_id(); }); });
    poster.join();
    QTRY_VERIFY_WITH_TIMEOUT(ran_on == std::this_thread::get_id(), 2000);
}
