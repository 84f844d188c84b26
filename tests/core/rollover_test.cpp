#include "core/log/rollover.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "library_rows.h"
#include "runtime/dates.h"
#include "store/connection.h"
#include "store/data_control.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"
#include "test_folder.h"

namespace tavora {
namespace {

// A settings file and a library of `rows` records, each with a distinct
// monthly request count so that CalcReq has one order.
class RollOver : public ::testing::Test {
  protected:
    void SetUp() override {
        installed = DateSerial(2026, 3, 9);  // a Monday, after the 5th
        ASSERT_EQ(create_settings_file(folder.path() / "Setup.mdb", installed), "");
        ASSERT_EQ(create_library_file(folder.path() / "qx1.mdb", installed), "");
        setup.DatabaseName = (folder.path() / "Setup.mdb").string();
        setup.RecordSource = "Setup";
        ASSERT_TRUE(setup.Refresh());
        library = pool.open(folder.path() / "qx1.mdb", FileKind::Library).library;
        ASSERT_TRUE(library);
    }

    void add_rows(int rows) {
        Recordset table;
        ASSERT_TRUE(table.Open(library, "Recordings1"));
        Transaction batch = library->transaction();
        for (int i = 0; i < rows; ++i) {
            ASSERT_TRUE(table.AddNew());
            table.SetField("Title", Value("Song " + std::to_string(i)));
            table.SetField("Request This Month", Value(1000 - i));
            table.SetField("AM40", Value(99));
            ASSERT_TRUE(table.Update());
        }
        batch.commit();
    }

    // A field of "Song n", the row added n-th from 0.
    Value field_of(int song, const char* field) {
        return keyed_row(library, "Recordings1", song + 1).Fields(field);
    }

    void set_setup(const std::string& field, const Value& value) {
        Recordset& row = setup.Recordset();
        row.MoveFirst();
        row.Edit();
        row.SetField(field, value);
        row.Update();
    }

    TestFolder folder;
    LibraryPool pool;
    DataControl setup{pool, FileKind::Settings};
    std::shared_ptr<Library> library;
    Station station;
    double installed = 0;
    std::string failure;  // what the roll-over couldn't write
};

TEST_F(RollOver, NewDayRanksTheTopSeventyFiveAndSpecialsUseTheirPlace) {
    add_rows(80);
    {  // Song 10 is a special record: it keeps its value and uses up place 11.
        Recordset table;
        ASSERT_TRUE(table.Open(library, "Recordings1"));
        table.Move(10);
        table.Edit();
        table.SetField("Source", Value("Snipit"));
        table.Update();
    }
    Roll_Over(station, installed + 1.25, setup, library, failure);
    EXPECT_EQ(field_of(0, "AM40").number(), 1);
    EXPECT_EQ(field_of(10, "AM40").number(), 99);
    EXPECT_EQ(field_of(11, "AM40").number(), 12);
    EXPECT_EQ(field_of(74, "AM40").number(), 75);
    EXPECT_EQ(field_of(75, "AM40").number(), 0);
    setup.Refresh();
    EXPECT_EQ(setup.Recordset().Fields("Current Day").number(), installed + 1);
    EXPECT_EQ(station.Log_Name, "C:\\tavora\\qxl310.log");
}

TEST_F(RollOver, TuesdayRuleTurnsTheBlockPartyOnOnlyOnATuesday) {
    station.BP_Tuesday = true;
    station.BP_On = true;
    Roll_Over(station, installed + 2, setup, library, failure);  // Wednesday
    EXPECT_FALSE(station.BP_On);
    set_setup("Current Day", Value::date(installed));
    Roll_Over(station, installed + 1, setup, library, failure);  // Tuesday
    EXPECT_TRUE(station.BP_On);
}

TEST_F(RollOver, NineDaysOffShiftTheWeekOnce) {
    add_rows(1);
    Recordset table;
    ASSERT_TRUE(table.Open(library, "Recordings1"));
    table.Edit();
    table.SetField("RTW", Value(5));
    for (int week = 0; week < 4; ++week)
        table.SetField(59 + week, Value(4 - week));
    ASSERT_TRUE(table.Update());
    Roll_Over(station, installed + 9, setup, library, failure);
    table.Requery();
    EXPECT_EQ(table.Fields("RTW").number(), 0);
    for (int week = 0; week < 4; ++week)
        EXPECT_EQ(table.Fields(59 + week).number(), 5 - week) << week;
    EXPECT_EQ(table.Fields("Request This Month").number(), 14);
    // The week date moved to today: a second check the same day shifts nothing.
    Roll_Over(station, installed + 9.5, setup, library, failure);
    table.Requery();
    EXPECT_EQ(table.Fields(59).number(), 5);
}

// The same day changes nothing; the new-day time decides where the weights count from.
TEST_F(RollOver, SameDayChangesNothingAndNewDayTimeSetsWhereWeightsCount) {
    add_rows(3);
    station.Log_Name = "kept";
    station.BP_On = true;
    Roll_Over(station, installed + 0.9, setup, library, failure);
    EXPECT_EQ(station.Log_Name, "kept");
    EXPECT_TRUE(station.BP_On);
    EXPECT_EQ(field_of(0, "AM40").number(), 99);

    set_setup("Time For New Day", Value::date(TimeSerial(6, 0, 0)));
    EXPECT_FALSE(Roll_Over(station, installed + TimeSerial(5, 59, 59), setup, library, failure));
    EXPECT_TRUE(Roll_Over(station, installed + TimeSerial(6, 0, 0), setup, library, failure));
    EXPECT_EQ(failure, "");
}

// Another machine holds the library's write lock: the ranking and the shift
// are not written, their dates stay, and the first check after the lock is
// gone does both, the shift once.
TEST_F(RollOver, ALockedLibraryIsLeftAsItWasAndTheWorkIsDoneOnceLater) {
    add_rows(1);
    set_setup("Current Week", Value::date(installed - 8));
    Recordset table;
    ASSERT_TRUE(table.Open(library, "Recordings1"));
    table.Edit();
    table.SetField("RTW", Value(5));
    ASSERT_TRUE(table.Update());

    auto other =
        std::make_unique<Connection>(folder.path() / "qx1.mdb", Connection::Mode::OpenExisting);
    ASSERT_TRUE(other->exec("BEGIN IMMEDIATE"));
    Roll_Over(station, installed + 1, setup, library, failure);
    EXPECT_NE(failure.find("Can't rank the requests"), std::string::npos) << failure;
    setup.Refresh();
    EXPECT_EQ(setup.Recordset().Fields("Current Day"), Value::date(installed));
    EXPECT_EQ(setup.Recordset().Fields("Current Week"), Value::date(installed - 8));
    EXPECT_EQ(field_of(0, "AM40").number(), 99);
    EXPECT_EQ(field_of(0, "RTW").number(), 5);

    other.reset();
    failure.clear();
    Roll_Over(station, installed + 1, setup, library, failure);
    Roll_Over(station, installed + 1.5, setup, library, failure);
    EXPECT_EQ(failure, "");
    EXPECT_EQ(field_of(0, "AM40").number(), 1);
    EXPECT_EQ(field_of(0, "RTW").number(), 0);
    EXPECT_EQ(field_of(0, "Request This Month").number(), 5);
}

}  // namespace
}  // namespace tavora
