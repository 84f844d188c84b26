#include "selection/advschedule.h"
#include "selection_fixture.h"

namespace tavora {
namespace {

class AdvscheduleTest : public SelectionTest {
  protected:
    Advschedule screen{station, fake.services, pool};
};

// "Set T40" marks the chart with 200, the operator places two songs, and
// "Final T40" takes the rest off; the lead clip and the other charts stay.
TEST_F(AdvscheduleTest, SetThenFinalReRanksTheChartAndLeavesLeadsAlone) {
    const long first = add({{"T40", Value(1)}, {"C40", Value(3)}, {"AM40", Value(2)}});
    const long second = add({{"T40", Value(2)}});
    const long dropped = add({{"T40", Value(3)}});
    const long lead = add({{"T40", Value(1)}, {"Source", Value("T40")}});
    const long off_chart = add();
    screen.Form_Load();
    EXPECT_FALSE(screen.cmdAdd.Visible);
    EXPECT_FALSE(screen.cmdDelete.Visible);
    EXPECT_EQ(screen.datPrimaryRS.Tag, "Top40");

    screen.click("SetAll", 0);
    EXPECT_TRUE(has(first, {{"T40", 200}, {"C40", 3}})) << "only the pressed chart";
    EXPECT_TRUE(has(dropped, {{"T40", 200}}));
    EXPECT_TRUE(has(lead, {{"T40", 1}}));
    EXPECT_TRUE(has(off_chart, {{"T40", 0}}));
    EXPECT_EQ(screen.datPrimaryRS.Tag, "Top40");

    // The view lists the rows without a Source, highest place first.
    Recordset& rows = screen.datPrimaryRS.Recordset();
    for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext()) {
        EXPECT_TRUE(rows.Fields("Source").is_null());
        const long id = static_cast<long>(rows.Fields("RecID").number());
        if (id == second) screen.DataGrid1_Edit(0, "1");
        if (id == first) screen.DataGrid1_Edit(0, "2");
        if (id == first || id == second) screen.click("cmdUpdate");
    }
    screen.click("SetAll", 3);
    EXPECT_TRUE(has(first, {{"T40", 2}, {"AM40", 2}}));
    EXPECT_TRUE(has(second, {{"T40", 1}}));
    EXPECT_TRUE(has(dropped, {{"T40", 0}}));
    EXPECT_TRUE(has(lead, {{"T40", 1}}));
    EXPECT_TRUE(fake.dialogs.shown().empty());
}

// The chart views list every row without a Source: a library of lead clips
// alone leaves them empty.
TEST_F(AdvscheduleTest, AnEmptyChartIsNamedAndTheListFallsBackToTitles) {
    add({{"T40", Value(1)}, {"Source", Value("T40")}});
    screen.Form_Load();
    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(fake.dialogs.shown()[0].request.text, "No records found for Top40");
    screen.fire("DataGrid1", 2, "HeadClick");
    ASSERT_EQ(fake.dialogs.shown().size(), 2u);
    EXPECT_EQ(fake.dialogs.shown()[1].request.text, "No records found for Dance");
    EXPECT_EQ(screen.datPrimaryRS.Tag, "Title Sort");
    EXPECT_EQ(screen.datPrimaryRS.RecordSource, "Title Sort");
    EXPECT_EQ(screen.datPrimaryRS.Recordset().RecordCount(), 1);
    // A place that is no number is refused and nothing is written.
    screen.DataGrid1_Edit(0, "first");
    EXPECT_EQ(fake.dialogs.shown().size(), 3u);
    screen.fire("DataGrid1", 4, "HeadClick");
    EXPECT_EQ(screen.datPrimaryRS.RecordSource, "Artist Sort");
}

}  // namespace
}  // namespace tavora
