#include "store/library_files.h"

#include <gmock/gmock.h>

#include <fstream>
#include <tuple>

#include "store/connection.h"
#include "store/schema.h"
#include "store_fixture.h"

namespace tavora {
namespace {

std::string file_text(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST_F(StoreTest, ANewLibraryHasEveryTableInFieldOrder) {
    for (const TableSpec& table : tables_of(FileKind::Library)) {
        Recordset rows = OpenRecordset(library_, std::string(table.name));
        ASSERT_EQ(rows.error(), "") << table.name;
        ASSERT_EQ(rows.field_count(), static_cast<int>(table.columns.size())) << table.name;
        for (int i = 0; i < rows.field_count(); ++i) {
            EXPECT_EQ(rows.field_name(i), table.columns[static_cast<std::size_t>(i)].name);
        }
    }
    Recordset recordings = OpenRecordset(library_, "Recordings1");
    EXPECT_EQ(recordings.field_count(), 63);
    EXPECT_EQ(recordings.field_name(39), "Source");
    EXPECT_EQ(recordings.field_name(54), "Schedule Select");
    EXPECT_EQ(recordings.RecordCount(), 0);
    EXPECT_EQ(library_->connection().scalar("PRAGMA journal_mode").text(), "delete");
    EXPECT_EQ(library_->connection().scalar("PRAGMA synchronous").number(), 2);
}

TEST_F(StoreTest, ANewLibraryHasItsDefaultRows) {
    Recordset schedule = OpenRecordset(library_, "Schedule");
    ASSERT_EQ(schedule.RecordCount(), 1);
    EXPECT_EQ(schedule.Fields("Name").text(), "Always");
    EXPECT_TRUE(schedule.Fields("Power").same(Value::boolean(true)));
    EXPECT_TRUE(schedule.Fields("Run Now").same(Value::boolean(true)));
    EXPECT_EQ(schedule.Fields("Type1").text(), "Always");

    Recordset types = OpenRecordset(library_, "Type Lookup");
    Recordset weights = OpenRecordset(library_, "DSearch");
    EXPECT_EQ(weights.RecordCount(), types.RecordCount() + 1);
    weights.MoveNext();  // the first row stands for no category
    for (; !types.IsEOF(); types.MoveNext(), weights.MoveNext()) {
        EXPECT_LT(types.Fields(0).number(), 20);
        EXPECT_EQ(weights.Fields(1).text(), types.Fields("Type").text());
        EXPECT_EQ(weights.Fields("ValidFiles").text(), "15");
        EXPECT_EQ(weights.Fields("ExcludeFiles").text(), "99");
    }
    // A category added by the operator is no master.
    ASSERT_TRUE(types.AddNew());
    ASSERT_TRUE(types.SetField("Type", "Jazz"));
    ASSERT_TRUE(types.Update());
    EXPECT_EQ(types.LastModified().number(), 20);
}

TEST_F(StoreTest, ANewSettingsFileStartsTheRollOverToday) {
    const auto path = folder_ / "Setup.mdb";
    ASSERT_EQ(create_settings_file(path, kToday + TimeSerial(15, 30, 0)), "");
    Library::Opened settings = Library::open(path, FileKind::Settings);
    ASSERT_NE(settings.library, nullptr) << settings.error;
    Recordset setup = OpenRecordset(settings.library, "select * from [Setup]");
    ASSERT_EQ(setup.RecordCount(), 1);
    EXPECT_EQ(setup.Fields("Active Database").text(), "c:\\tavora\\qx1.mdb");
    EXPECT_TRUE(setup.Fields("Time For New Day").same(Value::date(TimeSerial(6, 0, 0))));
    for (const char* field : {"Current Day", "Current Week", "Current Month"})
        EXPECT_TRUE(setup.Fields(field).same(Value::date(kToday))) << field;
    EXPECT_TRUE(setup.Fields("Use Schedule").same(Value::boolean(false)));
    EXPECT_EQ(OpenRecordset(settings.library, "DriveLookup").RecordCount(), 0);
    // Neither kind passes for the other.
    EXPECT_EQ(Library::open(path, FileKind::Library).library, nullptr);
    EXPECT_EQ(Library::open(library_path_, FileKind::Settings).library, nullptr);
}

TEST_F(StoreTest, CreationNeverOverwritesAFile) {
    add_recording({});
    EXPECT_NE(create_library_file(library_path_, kToday), "");
    EXPECT_NE(create_settings_file(library_path_, kToday), "");
    EXPECT_EQ(OpenRecordset(library_, "Recordings1").RecordCount(), 1);
}

TEST_F(StoreTest, FilesThatAreNoLibraryFailToOpenAndStayUntouched) {
    for (const auto& [name, text, error] :
         {std::tuple{"notes.mdb", "this is a text file, not a library\n", "not a database"},
          {"empty.mdb", "", "Recordings1"}}) {
        const auto path = folder_ / name;
        std::ofstream(path) << text;
        const Library::Opened opened = Library::open(path, FileKind::Library);
        EXPECT_EQ(opened.library, nullptr);
        EXPECT_THAT(opened.error, ::testing::HasSubstr(error));
        EXPECT_EQ(file_text(path), text) << name;
    }
    const auto missing = folder_ / "missing.mdb";
    EXPECT_EQ(Library::open(missing, FileKind::Library).library, nullptr);
    EXPECT_FALSE(std::filesystem::exists(missing));

    library_->connection().exec("PRAGMA user_version = 99");
    const Library::Opened newer = Library::open(library_path_, FileKind::Library);
    EXPECT_EQ(newer.library, nullptr);
    EXPECT_THAT(newer.error, ::testing::HasSubstr("newer version"));
}

TEST_F(StoreTest, RowsWrittenByAnotherToolReadBack) {
    // As the sqlite3 tool would write them: dates as text, 1 for true.
    Connection tool(library_path_, Connection::Mode::OpenExisting);
    ASSERT_TRUE(tool.exec(
        "INSERT INTO Recordings1 (Title, Artist, [Last Played], [Min Time Between Plays], "
        "[Valid Monday], [Valid Sunday], Sel, Source) "
        "VALUES ('Song', 'Band', '2026-03-01 10:30:00', '04:00', 1, 0, '3', '')"));
    Recordset rows = OpenRecordset(library_, "Recordings1");
    ASSERT_EQ(rows.RecordCount(), 1);
    EXPECT_TRUE(rows.Fields("Last Played")
                    .same(Value::date(DateSerial(2026, 3, 1) + TimeSerial(10, 30, 0))));
    EXPECT_TRUE(rows.Fields("Min Time Between Plays").same(Value::date(TimeSerial(4, 0, 0))));
    EXPECT_TRUE(rows.Fields("Valid Monday").same(Value::boolean(true)));
    EXPECT_TRUE(rows.Fields("Valid Sunday").same(Value::boolean(false)));
    EXPECT_TRUE(rows.Fields("Sel").same(Value(3)));
    EXPECT_TRUE(rows.Fields("Source").same(Value("")));
    EXPECT_TRUE(rows.Fields("Format").is_null());
    EXPECT_TRUE(rows.Fields("Total Request").same(Value(0)));
}

}  // namespace
}  // namespace tavora
