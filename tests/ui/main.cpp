#include <QApplication>
#include <QStyleFactory>
#include <QTest>

#include "ui_tests.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    BinderTest binder;
    DialogsTest dialogs;
    WindowsTest windows;
    DesktopTest desktop;
    int failed = 0;
    for (QObject* test : std::initializer_list<QObject*>{&binder, &dialogs, &windows, &desktop})
        failed += QTest::qExec(test, argc, argv);
    return failed == 0 ? 0 : 1;
}
