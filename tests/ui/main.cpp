#include <QApplication>
#include <QStyleFactory>
#include <QTest>

#include "ui_tests.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    int failed = 0;
    BinderTest binder;
    failed += QTest::qExec(&binder, argc, argv);
    DialogsTest dialogs;
    failed += QTest::qExec(&dialogs, argc, argv);
    LayoutsTest layouts;
    failed += QTest::qExec(&layouts, argc, argv);
    DataGridsTest grids;
    failed += QTest::qExec(&grids, argc, argv);
    DesktopTest desktop;
    failed += QTest::qExec(&desktop, argc, argv);
    return failed == 0 ? 0 : 1;
}
