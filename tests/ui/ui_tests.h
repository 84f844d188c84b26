#pragma once

#include <QObject>

// The screen test classes, each run by main.cpp.
class BinderTest : public QObject {
    Q_OBJECT
  private slots:
    void stateReachesEveryKindOfWidget();
    void widgetEventsReachTheHandlers();
    void disabledControlIgnoresClicks();
    void windowFollowsVisibleAndCloseBox();
};

class DialogsTest : public QObject {
    Q_OBJECT
  private slots:
    void messageBoxShowsTheExactWordsAndDefault();
    void closeBoxAnswersCancelOrTheDefault();
    void inputBoxGivesTextOrEmpty();
    void fileDialogHandsBackTheStoredForm();
    void timerWaitsWhileADialogIsOpen();
};

class DesktopTest : public QObject {
    Q_OBJECT
  private slots:
    void initTestCase();
    void cleanupTestCase();
    void runFillsTheViewerWithTheAiredTitles();
    void rowPressRaisesTheRequest();
    void onAirPopUpCountsDown();
    void menuItemsWithoutAWindowAreGreyed();
    void missingLibraryIsAskedFor();
    void exitEndsTheApplication();
};

class DataGridsTest : public QObject {
    Q_OBJECT
  private slots:
    void initTestCase();
    void cleanupTestCase();
    void chartPlaceTypedInTheGridReachesTheRow();
    void recordEditorShowsAndSavesTheRecordsFields();
    void pickingAScheduleRowShowsItsEntry();
};

class LayoutsTest : public QObject {
    Q_OBJECT
  private slots:
    void everyControlFindsItsWidget();
};
