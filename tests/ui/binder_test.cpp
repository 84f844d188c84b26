#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <functional>
#include <string>
#include <vector>

#include "core/forms/form.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "test_folder.h"
#include "ui/binder.h"
#include "ui/qt_event_loop.h"
#include "ui_tests.h"

using namespace tavora;

namespace {

// A window with one control of each kind; every handler notes its event.
class TestForm : public Form {
  public:
    TestForm() : Form("TestForm") {
        for (int i = 1; i <= 3; ++i)
            add("RB", i);
        const auto index = [](int i) { return std::to_string(i); };
        note("Command1", "Click");
        note("RB", "Click", index);
        note("Label1", "Click");
        note("Text1", "Change", [this](int) { return Text1.Text; });
        note("Check1", "Click", [this](int) { return std::to_string(Check1.Value); });
        note("List1", "Click",
             [this, index](int) { return index(List1.ListIndex) + " " + List1.Text; });
        note("Combo1", "Click", [this](int) { return Combo1.Text; });
        note("mnu_Go", "Click");
        note("SSTab1", "Click", [this](int) { return std::to_string(SSTab1.ListIndex); });
        note("UpDown1", "UpClick");
        note("UpDown1", "DownClick");
    }
    // A handler that notes the event, the control and what `detail` tells of it.
    void note(const char* control, const char* event,
              std::function<std::string(int)> detail = nullptr) {
        on(control, event, [=, this](int i) {
            events.push_back(std::string(event) + " " + control + (detail ? " " + detail(i) : ""));
        });
    }

    Control& RB(int i) { return *find("RB", i); }
    Control& Command1 = add("Command1");
    Control& Label1 = add("Label1");
    Control& Text1 = add_text("Text1");
    Control& Check1 = add_check("Check1");
    Control& List1 = add_list("List1");
    Control& Combo1 = add_list("Combo1");
    Control& mnu_Go = add("mnu_Go");
    Control& mnu_Later = add("mnu_Later");  // nothing answers it yet
    Control& SSTab1 = add_list("SSTab1");
    Control& UpDown1 = add("UpDown1");
    std::vector<std::string> events;
};

template <class W>
W* make(QWidget& parent, const char* name) {
    auto* widget = new W(&parent);
    widget->setObjectName(name);
    return widget;
}

// The window as a layout would make it, bound to a fresh form.
struct Bench {
    Bench() : paths(folder.path()), binder(loop, paths, launcher) {
        for (const char* name : {"Command1", "RB_1", "RB_2", "RB_3"})
            make<QPushButton>(window, name)->resize(80, 30);
        make<QLabel>(window, "Label1")->resize(80, 30);
        make<QLineEdit>(window, "Text1");
        make<QCheckBox>(window, "Check1");
        make<QListWidget>(window, "List1")->resize(120, 120);
        make<QComboBox>(window, "Combo1");
        make<QAction>(window, "mnu_Go");
        make<QAction>(window, "mnu_Later");
        auto* tabs = make<QTabWidget>(window, "SSTab1");
        for (const char* page : {"one", "two", "three"})
            tabs->addTab(new QWidget, page);
        make<QSpinBox>(window, "UpDown1");
        loop.after_event = [this] { binder.sync(); };
        binder.bind(form, window);
    }
    template <class W>
    W* widget(const char* name) {
        return window.findChild<W*>(name);
    }

    TestFolder folder;
    ui::QtEventLoop loop;
    PathMap paths;
    RecordingLauncher launcher;
    QWidget window;
    TestForm form;
    ui::Binder binder;
};

}  // namespace

void BinderTest::stateAndCloseBoxReachEveryKindOfWidget() {
    Bench b;
    TestForm& f = b.form;
    b.binder.sync();
    QVERIFY(!b.window.isVisible());
    f.Visible = true;
    f.Caption = "Now Playing";
    f.RB(2).Caption = "Hotel California";
    f.RB(2).ToolTipText = "N E W  S E L E C T I O N";
    f.RB(2).BackColor = 0x80C0FF;  // blue 0x80, green 0xC0, red 0xFF
    f.RB(3).Visible = false;
    f.Command1.Enabled = false;
    f.Label1.Caption = "A & B";
    f.Label1.ForeColor = 0x00FF00;
    f.Text1.Text = "typed by a rule";
    f.Check1.Caption = "Enabled";
    f.Check1.Value = 1;
    f.List1.List = {"one", "two", "three"};
    f.List1.ListIndex = 1;
    f.Combo1.List = {"Rock", "Pop"};
    f.Combo1.ListIndex = 1;
    f.mnu_Go.Caption = "&Go Now";
    f.SSTab1.List = {"Records", "Search"};
    f.SSTab1.ListIndex = 1;
    b.binder.sync();

    QCOMPARE(b.window.windowTitle(), QString("Now Playing"));
    auto* rb2 = b.widget<QPushButton>("RB_2");
    QCOMPARE(rb2->text(), QString("Hotel California"));
    QCOMPARE(rb2->toolTip(), QString("N E W  S E L E C T I O N"));
    QCOMPARE(rb2->palette().color(QPalette::Button), QColor(0xFF, 0xC0, 0x80));
    QVERIFY(b.widget<QPushButton>("RB_3")->isHidden());
    QVERIFY(!b.widget<QPushButton>("Command1")->isEnabled());
    auto* label = b.widget<QLabel>("Label1");
    QCOMPARE(label->text(), QString("A & B"));
    QCOMPARE(label->palette().color(QPalette::WindowText), QColor(0, 0xFF, 0));
    QCOMPARE(b.widget<QLineEdit>("Text1")->text(), QString("typed by a rule"));
    QCOMPARE(b.widget<QCheckBox>("Check1")->checkState(), Qt::Checked);
    QCOMPARE(b.widget<QCheckBox>("Check1")->text(), QString("Enabled"));
    auto* list = b.widget<QListWidget>("List1");
    QCOMPARE(list->count(), 3);
    QCOMPARE(list->currentRow(), 1);
    QCOMPARE(b.widget<QComboBox>("Combo1")->currentText(), QString("Pop"));
    QCOMPARE(b.widget<QAction>("mnu_Go")->text(), QString("&Go Now"));
    QVERIFY(b.widget<QAction>("mnu_Go")->isEnabled());
    QVERIFY(!b.widget<QAction>("mnu_Later")->isEnabled());
    // Tab titles the rules name; a page they leave unnamed keeps its own.
    auto* tabs = b.widget<QTabWidget>("SSTab1");
    QCOMPARE(tabs->currentIndex(), 1);
    QCOMPARE(tabs->tabText(0), QString("Records"));
    QCOMPARE(tabs->tabText(2), QString("three"));

    // A system colour hands the widget back to the layout's palette.
    f.RB(2).BackColor = 0x8000000F;
    f.RB(2).Caption = "Desperado";
    b.binder.sync();
    QCOMPARE(rb2->palette().color(QPalette::Button),
             b.widget<QPushButton>("RB_1")->palette().color(QPalette::Button));
    QCOMPARE(rb2->text(), QString("Desperado"));

    // The close box asks the rules first.
    bool keep = true;
    f.QueryUnload = [&keep] { return !keep; };
    b.window.close();
    QVERIFY(b.window.isVisible());
    QVERIFY(f.Visible);
    keep = false;
    b.window.close();
    QVERIFY(!b.window.isVisible());
    QVERIFY(!f.Visible);

    // Reopened, it shows what the rules left meanwhile.
    f.Label1.Caption = "changed while hidden";
    b.binder.sync();
    f.Visible = true;
    b.binder.sync();
    QVERIFY(b.window.isVisible());
    QCOMPARE(label->text(), QString("changed while hidden"));
}

void BinderTest::widgetEventsReachTheHandlers() {
    Bench b;
    TestForm& f = b.form;
    f.Visible = true;
    f.List1.List = {"one", "two", "three"};
    f.Combo1.List = {"Rock", "Pop"};
    f.SSTab1.List = {"Records", "Search", "Tools"};
    b.binder.sync();

    QTest::mouseClick(b.widget<QPushButton>("RB_2"), Qt::LeftButton);
    QTest::mouseClick(b.widget<QLabel>("Label1"), Qt::LeftButton);
    QTest::keyClicks(b.widget<QLineEdit>("Text1"), "ab");
    QTest::mouseClick(b.widget<QCheckBox>("Check1"), Qt::LeftButton);
    auto* list = b.widget<QListWidget>("List1");
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->item(2)).center());
    b.widget<QComboBox>("Combo1")->activated(1);
    b.widget<QAction>("mnu_Go")->trigger();
    b.widget<QTabWidget>("SSTab1")->setCurrentIndex(2);
    b.widget<QSpinBox>("UpDown1")->stepUp();
    b.widget<QSpinBox>("UpDown1")->stepDown();

    const std::vector<std::string> expected = {
        "Click RB 2",     "Click Label1",        "Change Text1 a",   "Change Text1 ab",
        "Click Check1 1", "Click List1 2 three", "Click Combo1 Pop", "Click mnu_Go",
        "Click SSTab1 2", "UpClick UpDown1",     "DownClick UpDown1"};
    QCOMPARE(f.events, expected);
    QCOMPARE(f.Check1.Value, 1);
    QCOMPARE(f.List1.ListIndex, 2);

    // A rule disables a control; the widget isn't synced yet, and a command nothing
    // answers: neither reaches a handler, and the event's sync greys the widget.
    f.RB(1).Enabled = false;
    QTest::mouseClick(b.widget<QPushButton>("RB_1"), Qt::LeftButton);
    b.widget<QAction>("mnu_Later")->trigger();
    QCOMPARE(f.events, expected);
    QVERIFY(!b.widget<QPushButton>("RB_1")->isEnabled());
}
