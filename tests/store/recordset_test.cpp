#include "store/recordset.h"

#include <gmock/gmock.h>

#include "store/copy_row.h"
#include "store/data_control.h"
#include "store_fixture.h"

namespace tavora {
namespace {

using ::testing::ElementsAre;

using RecordsetTest = TitledRowsTest;

TEST_F(RecordsetTest, MovesCountAndPositions) {
    Recordset rows = OpenRecordset(library_, "Title Sort");
    EXPECT_EQ(rows.RecordCount(), 5);
    EXPECT_EQ(rows.AbsolutePosition(), 0);
    EXPECT_FALSE(rows.IsBOF());
    EXPECT_EQ(rows.Fields("Title").text(), "a");

    rows.MoveLast();
    EXPECT_EQ(rows.AbsolutePosition(), 4);
    EXPECT_EQ(rows.Fields(1).text(), "e");
    rows.MoveNext();
    EXPECT_TRUE(rows.IsEOF());
    EXPECT_EQ(rows.AbsolutePosition(), -1);
    EXPECT_TRUE(rows.Fields(1).is_null());

    rows.MoveFirst();
    rows.Move(3);
    EXPECT_EQ(rows.Fields("title").text(), "d");
    rows.Move(-2);
    EXPECT_EQ(rows.AbsolutePosition(), 1);
    rows.MovePrevious();
    rows.MovePrevious();
    EXPECT_TRUE(rows.IsBOF());
    EXPECT_FALSE(rows.IsEOF());

    rows.MoveFirst();
    rows.Move(7);
    EXPECT_TRUE(rows.IsEOF());
}

// A grid reads the rows it shows without moving the rules' current row or
// dropping their pending edit.
TEST_F(RecordsetTest, AnyRowReadsWithoutMoving) {
    Recordset rows = OpenRecordset(library_, "Title Sort");
    rows.Move(1);
    ASSERT_TRUE(rows.Edit());
    ASSERT_TRUE(rows.SetField("Title", Value("bb")));
    const int title = rows.field_index("Title");
    EXPECT_EQ(rows.FieldAt(4, title).text(), "e");
    EXPECT_EQ(rows.FieldAt(1, title).text(), "bb");
    EXPECT_TRUE(rows.FieldAt(5, title).is_null());
    EXPECT_TRUE(rows.FieldAt(0, 99).is_null());
    EXPECT_EQ(rows.AbsolutePosition(), 1);
    EXPECT_TRUE(rows.is_editing());

    // A result that is not one table's rows reads the same way, but is read-only.
    Recordset titles = OpenRecordset(library_, "SELECT Title FROM Recordings1 ORDER BY Title");
    EXPECT_EQ(titles.FieldAt(2, 0).text(), "c");
    EXPECT_EQ(titles.AbsolutePosition(), 0);
    EXPECT_FALSE(titles.Edit());
}

TEST_F(StoreTest, AnEmptySourceIsAtBothEndsAndAnUnknownOneFails) {
    Recordset rows = OpenRecordset(library_, "SRequest");
    EXPECT_EQ(rows.error(), "");
    EXPECT_EQ(rows.RecordCount(), 0);
    EXPECT_TRUE(rows.IsEOF());
    EXPECT_TRUE(rows.IsBOF());
    EXPECT_FALSE(rows.Edit());
    for (const char* bad : {"No Such Query", "SELECT * FROM Recordings1 WHERE [No Column] > 0"}) {
        Recordset none = OpenRecordset(library_, bad);
        EXPECT_NE(none.error(), "") << bad;
        EXPECT_EQ(none.RecordCount(), 0);
        EXPECT_TRUE(none.IsEOF());
    }
}

TEST_F(RecordsetTest, AnUpdateIsSeenByAnotherRecordsetAfterRefresh) {
    Recordset writer = OpenRecordset(library_, "Title Sort");
    Recordset reader = OpenRecordset(library_, "NormSel");
    EXPECT_EQ(reader.RecordCount(), 5);

    writer.Move(2);  // "c"
    ASSERT_TRUE(writer.Edit());
    ASSERT_TRUE(writer.SetField("Schedule Select", 0));
    ASSERT_TRUE(writer.SetField("Title", "cc"));
    ASSERT_TRUE(writer.Update()) << writer.error();
    EXPECT_EQ(writer.Fields("Title").text(), "cc");

    ASSERT_TRUE(reader.Refresh());
    EXPECT_EQ(reader.RecordCount(), 4);
    for (; !reader.IsEOF(); reader.MoveNext())
        EXPECT_NE(reader.Fields("Title").text(), "cc");

    // Written to the file at once: a new connection sees it.
    EXPECT_THAT(ids("SELECT * from Recordings1 where [Title] = 'cc'", open_library(library_path_)),
                ElementsAre(5));
}

TEST_F(RecordsetTest, AWalkThatWritesEveryRowKeepsItsPlaceAndARollbackLeavesNoTrace) {
    Recordset rows = OpenRecordset(library_, "Recordings1");
    int seen = 0;
    {
        Transaction batch = library_->transaction();
        for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext()) {
            ASSERT_TRUE(rows.Edit());
            ASSERT_TRUE(
                rows.SetField("How Many Today", rows.Fields("How Many Today").number() + 2));
            ASSERT_TRUE(rows.Update());
            EXPECT_EQ(rows.Fields("How Many Today").number(), 2);
            ++seen;
        }
        ASSERT_TRUE(batch.commit());
    }
    EXPECT_EQ(seen, 5);
    EXPECT_EQ(
        library_->connection().scalar("SELECT sum([How Many Today]) FROM Recordings1").number(),
        10);
    rows.MoveFirst();
    {
        Transaction undone = library_->transaction();
        ASSERT_TRUE(rows.Edit());
        ASSERT_TRUE(rows.SetField("Sel", 9));
        ASSERT_TRUE(rows.Update());
        EXPECT_EQ(rows.Fields("Sel").number(), 9);
    }
    EXPECT_EQ(rows.Fields("Sel").number(), 0);
}

TEST_F(RecordsetTest, RefreshRunsAgainOnlyWhenTheLibraryChanged) {
    library_->set_outside_check_interval(std::chrono::hours(1));
    Recordset rows = OpenRecordset(library_, "NormSel");
    // A row added by another program is not looked for yet...
    add_recording({{"Schedule Select", 1}}, open_library(library_path_));
    rows.MoveLast();
    ASSERT_TRUE(rows.Refresh());
    EXPECT_EQ(rows.AbsolutePosition(), 0);
    EXPECT_EQ(rows.RecordCount(), 5);
    // ...but is found once the outside check runs.
    library_->set_outside_check_interval(std::chrono::milliseconds(0));
    ASSERT_TRUE(rows.Refresh());
    EXPECT_EQ(rows.RecordCount(), 6);
}

TEST_F(RecordsetTest, AddNewKeepsThePlaceAndNamesTheNewRow) {
    Recordset rows = OpenRecordset(library_, "Title Sort");
    rows.Move(1);
    ASSERT_TRUE(rows.AddNew());
    EXPECT_TRUE(rows.Fields("Title").is_null());
    ASSERT_TRUE(rows.SetField("Title", "new"));
    ASSERT_TRUE(rows.Update());
    EXPECT_EQ(rows.Fields("Title").text(), "b");
    EXPECT_EQ(rows.RecordCount(), 6);
    EXPECT_EQ(rows.LastModified().number(), 6);

    ASSERT_TRUE(rows.SetBookmark(rows.LastModified()));
    EXPECT_EQ(rows.Fields("Title").text(), "new");
    // Defaults of the file apply to fields left alone.
    EXPECT_EQ(rows.Fields("Total Request").number(), 0);
    EXPECT_TRUE(rows.Fields("FadeIn").same(Value::boolean(false)));
}

TEST_F(RecordsetTest, DeleteThenMoveNextReachesTheFollowingRow) {
    Recordset rows = OpenRecordset(library_, "Title Sort");
    rows.Move(1);  // "b"
    ASSERT_TRUE(rows.Delete());
    EXPECT_TRUE(rows.Fields("Title").is_null());
    rows.MoveNext();
    EXPECT_EQ(rows.Fields("Title").text(), "c");
    EXPECT_EQ(rows.RecordCount(), 4);
    EXPECT_THAT(ids("Title Sort"), ElementsAre(4, 5, 1, 3));
}

TEST_F(RecordsetTest, ValuesAreConvertedToTheFieldTypeAndEmptyTextIsNoNull) {
    Recordset rows = OpenRecordset(library_, "Recordings1");
    ASSERT_TRUE(rows.Edit());
    EXPECT_FALSE(rows.SetField("Last Played", "not a date"));
    EXPECT_FALSE(rows.SetField("Sel", "many"));
    EXPECT_FALSE(rows.SetField("RecID", 99));
    EXPECT_FALSE(rows.SetField("No Such Field", 1));
    ASSERT_TRUE(rows.SetField("Sel", "12"));
    ASSERT_TRUE(rows.SetField("Min Time Between Plays", "04:00"));
    ASSERT_TRUE(rows.SetField("Valid Monday", -1));
    ASSERT_TRUE(rows.SetField("Format", 3));
    ASSERT_TRUE(rows.SetField("Source", ""));
    ASSERT_TRUE(rows.Update());
    rows.Requery();
    EXPECT_TRUE(rows.Fields("Sel").same(Value(12)));
    EXPECT_TRUE(rows.Fields("Min Time Between Plays").same(Value::date(TimeSerial(4, 0, 0))));
    EXPECT_TRUE(rows.Fields("Valid Monday").same(Value::boolean(true)));
    EXPECT_TRUE(rows.Fields("Format").same(Value("3")));
    EXPECT_TRUE(rows.Fields("Source").same(Value("")));
    rows.MoveNext();
    EXPECT_TRUE(rows.Fields("Source").is_null());
}

TEST_F(RecordsetTest, ARowCopiesByOrdinalIntoAnotherLibrary) {
    Recordset from = OpenRecordset(library_, "Recordings1");
    ASSERT_TRUE(from.Edit());
    ASSERT_TRUE(from.SetField("Week4 Requests", 7));
    ASSERT_TRUE(from.SetField("Last Played", Value::date(45000.5)));
    ASSERT_TRUE(from.Update());

    const auto import_path = folder_ / "qximp.mdb";
    ASSERT_EQ(create_library_file(import_path, kToday), "");
    auto target = open_library(import_path);
    Recordset to = OpenRecordset(target, "Recordings1");
    ASSERT_TRUE(copy_row_by_ordinal(from, to));
    ASSERT_TRUE(to.Requery());
    ASSERT_EQ(to.RecordCount(), 1);
    for (int ordinal = 1; ordinal <= 62; ++ordinal) {
        EXPECT_TRUE(to.Fields(ordinal).same(from.Fields(ordinal))) << ordinal;
    }
}

TEST_F(RecordsetTest, DataControlFollowsItsSourceAndDatabase) {
    LibraryPool pool;
    DataControl data(pool);
    EXPECT_FALSE(data.Refresh());
    data.DatabaseName = library_path_.string();
    data.RecordSource = "Title Sort";
    ASSERT_TRUE(data.Refresh()) << data.error();
    EXPECT_EQ(data.Recordset().Fields("Title").text(), "a");

    // A second control on the same file shares its library, so a write
    // through one is seen by the other at once.
    DataControl other(pool);
    other.DatabaseName = library_path_.string();
    other.RecordSource = "NormSel";
    ASSERT_TRUE(other.Refresh());
    ASSERT_TRUE(data.Recordset().Edit());
    ASSERT_TRUE(data.Recordset().SetField("Schedule Select", 0));
    ASSERT_TRUE(data.UpdateRecord());
    ASSERT_TRUE(other.Refresh());
    EXPECT_EQ(other.Recordset().RecordCount(), 4);

    data.RecordSource = "Artist Sort";
    ASSERT_TRUE(data.Refresh());
    EXPECT_EQ(data.Recordset().source(), "Artist Sort");
    data.DatabaseName = (folder_ / "missing.mdb").string();
    EXPECT_FALSE(data.Refresh());
    EXPECT_EQ(data.Recordset().RecordCount(), 0);
}

}  // namespace
}  // namespace tavora
