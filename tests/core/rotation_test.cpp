#include "core/rotation/rotate_db.h"

#include <gtest/gtest.h>

#include <fstream>

#include "core/settings/frm_setup.h"
#include "fake_services.h"
#include "platform/file_ops.h"
#include "runtime/dates.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {
namespace {

const double kMonday = DateSerial(2026, 3, 9);

// An installed station: settings, a library of a few rows, Act_Db set.
class Rotation : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(create_settings_file(home() / "Setup.mdb", kMonday), "");
        ASSERT_EQ(create_library_file(home() / "qx1.mdb", kMonday), "");
        add_rows(3);
        station.Act_Db = "c:\\tavora\\qx1.mdb";
    }

    void add_rows(int rows) {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        ASSERT_TRUE(library);
        Recordset table = OpenRecordset(library, "Recordings1");
        for (int i = 0; i < rows; ++i) {
            table.AddNew();
            table.SetField("Title", Value("Song " + std::to_string(i)));
            ASSERT_TRUE(table.Update());
        }
    }

    long rows_in(const char* name) const {
        auto library = Library::open(home() / name, FileKind::Library).library;
        return library ? OpenRecordset(library, "Recordings1").RecordCount() : -1;
    }

    std::filesystem::path home() const { return fake.home(); }
    bool exists(const char* name) const { return files::Exists(home() / name); }

    FakeServices fake{kMonday + 0.5};
    Station station;
};

TEST_F(Rotation, ThreeStartsFillTheBackupChain) {
    ASSERT_TRUE(Rotate_Db(station, fake.services));
    EXPECT_TRUE(exists("qxlast.mdb"));
    EXPECT_FALSE(exists("qxlast1.mdb") || exists("qxbk.mdb"));
    for (int start = 0; start < 2; ++start) {
        add_rows(1);
        ASSERT_TRUE(Rotate_Db(station, fake.services));
    }
    EXPECT_EQ(rows_in("qxlast.mdb"), 5);
    EXPECT_EQ(rows_in("qxlast1.mdb"), 4);
    EXPECT_EQ(rows_in("qxlast2.mdb"), 3);
    EXPECT_EQ(rows_in("qx1.mdb"), 5);
    EXPECT_TRUE(fake.dialogs.shown().empty());
    EXPECT_FALSE(exists("qxbaksun.mdb") || exists("qxbakthu.mdb")) << "a Monday keeps none";
}

TEST_F(Rotation, DamagedLibraryTakesTheFailurePathTouchingNothing) {
    ASSERT_TRUE(Rotate_Db(station, fake.services));  // a qxlast.mdb to keep
    std::ofstream(home() / "qx1.mdb", std::ios::binary | std::ios::trunc) << "not a database";
    const auto backup_size = files::Length(home() / "qxlast.mdb");

    EXPECT_FALSE(Rotate_Db(station, fake.services));
    EXPECT_EQ(station.Cmp_Fail, 1);
    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(fake.dialogs.shown()[0].request.text,
              "The Database c:\\tavora\\qx1.mdb could not be compacted! Please replace "
              "c:\\tavora\\qx1.mdb with one of the (qxlast.mdb) backup files from your "
              "c:\\tavora folder");
    EXPECT_EQ(files::Length(home() / "qx1.mdb"), 14u);
    EXPECT_EQ(files::Length(home() / "qxlast.mdb"), backup_size);
    EXPECT_FALSE(exists("qxlast1.mdb") || exists("qxbk.mdb"));
}

TEST_F(Rotation, SundayAndFridayKeepTheirWeeklyCopies) {
    fake.clock.Set(DateSerial(2026, 3, 8) + 0.5);
    ASSERT_TRUE(Rotate_Db(station, fake.services));
    EXPECT_EQ(rows_in("qxbaksun.mdb"), 3);
    EXPECT_FALSE(exists("qxbakthu.mdb"));
    add_rows(1);
    fake.clock.Set(DateSerial(2026, 3, 13) + 0.5);  // Friday's copy is named for Thursday
    ASSERT_TRUE(Rotate_Db(station, fake.services));
    EXPECT_EQ(rows_in("qxbakthu.mdb"), 4);
    EXPECT_EQ(rows_in("qxbaksun.mdb"), 3);
}

// The Setup screen's library commands: each ends the program.
class SetupCommands : public Rotation {
  protected:
    void SetUp() override {
        Rotation::SetUp();
        station.Run_Mode = 0;  // start-up's verdict on a library on c:; the screen keeps it
        screen.End_Program = [this] { ++ended; };
        screen.Form_Load();
    }
    std::string active_database() {
        screen.datPrimaryRS.Refresh();
        return screen.datPrimaryRS.Recordset().Fields("Active Database").text();
    }

    LibraryPool pool;
    frmSetup screen{station, fake.services, pool};
    int ended = 0;
};

TEST_F(SetupCommands, NewCopiesTheLastCompactionUnderTheNextFreeName) {
    ASSERT_TRUE(Rotate_Db(station, fake.services));
    add_rows(4);  // after the compaction: not in the copy
    ASSERT_TRUE(files::Copy(home() / "qx1.mdb", home() / "qx2.mdb"));
    fake.dialogs.Queue(Answer::OK);
    screen.click("Command7");
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(rows_in("qx3.mdb"), 3);
    EXPECT_EQ(station.Act_Db, "c:\\tavora\\qx3.mdb");
    EXPECT_EQ(active_database(), "c:\\tavora\\qx3.mdb");
    EXPECT_EQ(fake.dialogs.shown().back().request.text,
              "All records have been copied to c:\\tavora\\qx3.mdb, Changes will be applied when "
              "The Tavora is restarted");
}

TEST_F(SetupCommands, NewCancelledByDefaultThenWithoutABackupSavesOnlyThePath) {
    screen.click("Command7");
    EXPECT_EQ(ended, 0);
    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(fake.dialogs.shown()[0].reply.answer, Answer::Cancel);

    fake.dialogs.Queue(Answer::OK);
    screen.click("Command7");
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(exists("qx2.mdb"));
    EXPECT_EQ(active_database(), "c:\\tavora\\qx2.mdb");
}

TEST_F(SetupCommands, ClearLeavesExactlyOneRow) {
    fake.dialogs.Queue(Answer::OK);
    screen.click("Command8");
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(rows_in("qx1.mdb"), 1);
    EXPECT_EQ(fake.dialogs.shown().back().request.title, "Program Restart needed");
}

TEST_F(SetupCommands, RestoreWritesTheWaitingFileOrIsAborted) {
    fake.dialogs.QueueText("c:\\tavora\\qx1.mdb");
    fake.dialogs.Queue(Answer::No);
    screen.click("CmdRestore");
    EXPECT_EQ(fake.dialogs.shown().back().request.text, "Restore Aborted");
    EXPECT_FALSE(exists("qxrestore.mdb"));
    EXPECT_EQ(ended, 0);

    fake.dialogs.QueueText("c:\\tavora\\qx1.mdb");
    fake.dialogs.Queue(Answer::Yes);
    screen.click("CmdRestore");
    EXPECT_TRUE(exists("qxrestore.mdb"));
    EXPECT_EQ(fake.dialogs.shown().back().request.title, "New Database DETECTED");
    EXPECT_EQ(ended, 1);
    // The next start applies the waiting copy, then deletes it.
    add_rows(2);
    ASSERT_TRUE(Rotate_Db(station, fake.services));
    EXPECT_FALSE(exists("qxrestore.mdb"));
    EXPECT_EQ(rows_in("qx1.mdb"), 3);

    station.Run_Mode = 1;
    screen.click("CmdRestore");
    EXPECT_EQ(fake.dialogs.shown().back().request.text, "Not Available in REMOTE mode");
}

TEST_F(SetupCommands, RemoteBoxSpeaksOnlyWhenTheScreenIsVisible) {
    screen.set("chkFields", 1, "1");  // hidden: silent
    EXPECT_EQ(station.Run_Mode, 1);
    EXPECT_TRUE(fake.dialogs.shown().empty());

    screen.Visible = true;
    fake.dialogs.Queue(Answer::OK);
    fake.dialogs.QueueText("c:\\tavora\\qx9.mdb");
    screen.set("chkFields", 1, "0");
    EXPECT_EQ(station.Run_Mode, 0);
    ASSERT_EQ(fake.dialogs.shown().size(), 3u);
    EXPECT_EQ(fake.dialogs.shown()[0].request.text,
              "Re-enter this program to remove remote operation.");
    EXPECT_EQ(fake.dialogs.shown()[1].request.title, "Tavora DB Search");
    EXPECT_EQ(fake.dialogs.shown()[1].request.filter,
              "QX Databases|QX1*.mdb;QX *.mdb|TQX Backup Files|QXL*.mdb;qxl*.mdb;qxb*.mdb");
    EXPECT_EQ(active_database(), "c:\\tavora\\qx9.mdb");
    EXPECT_EQ(ended, 1);
}

TEST_F(SetupCommands, SettingsControlsDriveTheirVariables) {
    screen.click("Command4");
    EXPECT_EQ(station.MFilter, 1);
    EXPECT_EQ(screen.Command4.Caption, "MFilter ON");
    screen.set("Combo4", -1, "12");
    EXPECT_EQ(station.Ply7_Mix, 12);
    EXPECT_EQ(station.Ply7_MixOut, 12);
    station.Antiskip = 2;
    screen.click("Command9");
    EXPECT_EQ(fake.dialogs.shown().back().request.text,
              "Antiskip mode has Set Reload delay of: 2 Sec");
    const auto shown = fake.dialogs.shown().size();
    station.Antiskip = 5;
    screen.click("Command9");
    EXPECT_EQ(fake.dialogs.shown().size(), shown);
    screen.set("BPCkeck", 2, "1");
    EXPECT_EQ(station.Log_Due, 0);

    screen.click("Command1");  // Save And Close writes qxbp.ini
    EXPECT_TRUE(exists("qxbp.ini"));
    EXPECT_FALSE(screen.Loaded);
}

}  // namespace
}  // namespace tavora
