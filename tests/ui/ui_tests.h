#pragma once

#include <QObject>

// The screen test classes, each run by main.cpp.
class BinderTest : public QObject {
    Q_OBJECT
  private slots:
    void stateAndCloseBoxReachEveryKindOfWidget();
    void widgetEventsReachTheHandlers();
};

class DialogsTest : public QObject {
    Q_OBJECT
  private slots:
    void messageBoxShowsItsWordsAndTheCloseBoxAnswers();
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
    void menuItemsOpenTheirWindows();
    void missingLibraryIsAskedForAndExitEndsTheApplication();
};

// The hand-made windows and their data grids, on one desktop.
class WindowsTest : public QObject {
    Q_OBJECT
  private slots:
    void initTestCase();
    void cleanupTestCase();
    void everyControlFindsItsWidget();
    void chartPlaceTypedInTheGridReachesTheRow();
    void recordEditorShowsAndSavesTheRecordsFields();
    void pickingAScheduleRowShowsItsEntry();
};
