#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/dialog_stand_ins.h"

namespace tavora {
namespace {

TEST(ScriptedDialogs, MessageBoxTakesAFittingQueuedAnswerOrItsDefaultButton) {
    ScriptedDialogs dialogs;
    dialogs.Queue(Answer::No);
    const Answer a = dialogs.MsgBox("Are You Sure you want to SKIP this song?", Buttons::YesNo,
                                    "Skipping Another Song Huh?");
    EXPECT_EQ(static_cast<int>(a), 7);
    ASSERT_EQ(dialogs.shown().size(), 1u);
    const auto& shown = dialogs.shown()[0];
    EXPECT_EQ(shown.request.text, "Are You Sure you want to SKIP this song?");
    EXPECT_EQ(shown.request.title, "Skipping Another Song Huh?");
    EXPECT_EQ(shown.request.buttons, Buttons::YesNo);
    EXPECT_TRUE(shown.scripted);

    EXPECT_EQ(dialogs.MsgBox("t", Buttons::YesNo), Answer::Yes);
    EXPECT_EQ(dialogs.MsgBox("t", Buttons::YesNo, "Clear Charts", Icon::None, 2), Answer::No);
    EXPECT_EQ(dialogs.MsgBox("t", Buttons::OKCancel, "", Icon::Exclamation, 2), Answer::Cancel);
    EXPECT_EQ(dialogs.MsgBox("t", Buttons::YesNoCancel, "", Icon::None, 3), Answer::Cancel);
    EXPECT_EQ(dialogs.MsgBox("t", Buttons::AbortRetryIgnore, "", Icon::None, 2), Answer::Retry);
    EXPECT_EQ(dialogs.MsgBox("t", Buttons::YesNo, "", Icon::None, 3), Answer::Yes);
    EXPECT_EQ(dialogs.MsgBox("Sorry, Not Yet"), Answer::OK);
    EXPECT_FALSE(dialogs.shown().back().scripted);

    dialogs.Queue(Answer::Yes);
    EXPECT_EQ(dialogs.MsgBox("Complete"), Answer::OK);  // OK only: Yes can't be pressed
    EXPECT_EQ(dialogs.InputBox("Enter Title For This CD", "Enter Title", "x"), "x");
    EXPECT_EQ(dialogs.pending(), 1u);
    EXPECT_EQ(dialogs.MsgBox("Continue?", Buttons::YesNo, "", Icon::None, 2), Answer::Yes);
    EXPECT_EQ(dialogs.pending(), 0u);

    dialogs.QueueText("Some Title");
    EXPECT_EQ(dialogs.MsgBox("Are you sure?", Buttons::YesNo), Answer::Yes);
    EXPECT_EQ(dialogs.pending(), 1u) << "a message box never takes a text";
}

TEST(ScriptedDialogs, TextDialogsGiveTheTextTheDefaultOrEmptyOnCancel) {
    ScriptedDialogs dialogs;
    dialogs.QueueText("My Song");
    dialogs.Queue(Answer::Cancel);
    dialogs.Queue(Answer::OK);
    EXPECT_EQ(dialogs.InputBox("Enter Title For Track#1", "Enter Title", "Track 1"), "My Song");
    EXPECT_EQ(dialogs.InputBox("Enter Title For Track#2", "Enter Title", "Track 2"), "");
    EXPECT_EQ(dialogs.InputBox("Enter Title For Track#3", "Enter Title", "Track 3"), "Track 3");

    const std::string filter = "TQX Log Files|*.log";
    dialogs.Queue(Answer::Cancel);
    EXPECT_EQ(dialogs.OpenFile("Tavora Logfile Search", filter, "c:\\tavora"), "");
    EXPECT_EQ(dialogs.shown().back().request.filter, filter);
    // Unscripted: the proposed name, in the start folder unless it has one.
    EXPECT_EQ(dialogs.SaveFile("s", "ASF|*.asf", "c:\\tavora\\", "show.asf"),
              "c:\\tavora\\show.asf");
    EXPECT_EQ(dialogs.SaveFile("s", "ASF|*.asf", "c:\\tavora", "d:\\rec\\show.asf"),
              "d:\\rec\\show.asf");
    EXPECT_EQ(dialogs.OpenFile("Tavora DB RESTORE", filter, "c:\\tavora"), "");
}

TEST(DialogLogs, EachDialogIsOneLineWithItsWordsAndReply) {
    std::vector<std::string> lines;
    LoggingDialogs headless([&](const std::string& line) { lines.push_back(line); });
    EXPECT_EQ(headless.MsgBox("Are you sure you want to remove Song?", Buttons::YesNo,
                              "Remove Cued Selection", Icon::Critical, 2),
              Answer::No);
    EXPECT_EQ(headless.InputBox("Enter Title", "Enter Title", "CD"), "CD");

    ScriptedDialogs scripted([&](const std::string& line) { lines.push_back(line); });
    scripted.Queue(Answer::Cancel);
    scripted.OpenFile("Tavora DB Search", "QX Databases|QX1*.mdb", "c:\\tavora");

    EXPECT_EQ(lines, (std::vector<std::string>{
                         "MsgBox \"Remove Cued Selection\": \"Are you sure you want to remove "
                         "Song?\" [Yes/No] -> No",
                         "InputBox \"Enter Title\": \"Enter Title\" default \"CD\" -> OK \"CD\"",
                         "OpenFile \"Tavora DB Search\": in \"c:\\tavora\" filter \"QX "
                         "Databases|QX1*.mdb\" name \"\" -> Cancel \"\"",
                     }));
}

}  // namespace
}  // namespace tavora
