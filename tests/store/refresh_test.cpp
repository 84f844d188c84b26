#include <gtest/gtest.h>

#include "store/data_control.h"
#include "store_fixture.h"

namespace tavora {
namespace {

class RefreshTest : public TitledRowsTest {
  protected:
    // A row the library isn't told of: only a source that runs again finds it.
    void add_unnoticed_row() {
        ASSERT_TRUE(library_->connection().exec(
            "INSERT INTO Recordings1 (Title, [Schedule Select]) VALUES ('x', 1)"));
    }

    void write_first(const char* field, const Value& value) {
        Recordset rows = OpenRecordset(library_, "Recordings1");
        ASSERT_TRUE(rows.Edit());
        ASSERT_TRUE(rows.SetField(field, value));
        ASSERT_TRUE(rows.Update()) << rows.error();
    }
};

TEST_F(RefreshTest, ASourceRunsAgainOnlyAfterAWriteItCouldSee) {
    Recordset scheduled = OpenRecordset(library_, "NormSel");
    Recordset by_title = OpenRecordset(library_, "Title Sort");
    Recordset drawn = OpenRecordset(library_, "SELECT * FROM Recordings1 WHERE random() <> 0.5");
    add_unnoticed_row();

    write_first("Title", "aa");
    ASSERT_TRUE(scheduled.Refresh());
    EXPECT_EQ(scheduled.RecordCount(), 5);
    ASSERT_TRUE(by_title.Refresh());
    EXPECT_EQ(by_title.RecordCount(), 6);
    // A function whose answer moves with no write always runs again.
    ASSERT_TRUE(drawn.Refresh());
    EXPECT_EQ(drawn.RecordCount(), 6);

    // The same value written again still counts as a write of the column.
    write_first("Schedule Select", 1);
    ASSERT_TRUE(scheduled.Refresh());
    EXPECT_EQ(scheduled.RecordCount(), 6);

    add_unnoticed_row();
    library_->note_write();
    ASSERT_TRUE(scheduled.Refresh());
    EXPECT_EQ(scheduled.RecordCount(), 7);
}

TEST_F(RefreshTest, ADataControlTakesASourceUpAgainWithTheWritesSince) {
    LibraryPool pool;
    DataControl data(pool);
    data.DatabaseName = library_path_.string();
    data.RecordSource = "NormSel";
    ASSERT_TRUE(data.Refresh());
    data.Recordset().Move(2);

    data.RecordSource = "Title Sort";
    ASSERT_TRUE(data.Refresh());
    ASSERT_TRUE(data.Recordset().Edit());
    ASSERT_TRUE(data.Recordset().SetField("Schedule Select", 0));
    ASSERT_TRUE(data.UpdateRecord());

    data.RecordSource = "NormSel";
    ASSERT_TRUE(data.Refresh());
    EXPECT_EQ(data.Recordset().AbsolutePosition(), 0);
    EXPECT_EQ(data.Recordset().RecordCount(), 4);

    // Another program's row is found on the way back, whatever the interval.
    add_recording({{"Schedule Select", 1}}, open_library(library_path_));
    data.Recordset().library()->set_outside_check_interval(std::chrono::hours(1));
    data.RecordSource = "Title Sort";
    ASSERT_TRUE(data.Refresh());
    data.RecordSource = "NormSel";
    ASSERT_TRUE(data.Refresh());
    EXPECT_EQ(data.Recordset().RecordCount(), 5);
}

}  // namespace
}  // namespace tavora
