#include "selection/form2.h"
#include "selection_fixture.h"

namespace tavora {
namespace {

// Each test brings its own schedule: the library's "Always" entry is
// switched off first.
class ScheduleTest : public SelectionTest {
  protected:
    void SetUp() override {
        SelectionTest::SetUp();
        Recordset always = OpenRecordset(library, "Schedule");
        always.Edit();
        always.SetField("Power", Value::boolean(false));
        always.Update();
        pop = add({{"Category", Value("POP")}});
        rock = add({{
                        "Category",
                        Value("Dance"),
                    },
                    {"Speed", Value("ROCK")}});
        charted = add({{"Category", Value("Country")}, {"D40", Value(4)}});
    }

    long entry(Fields fields) {
        Recordset table = OpenRecordset(library, "Schedule");
        table.AddNew();
        const Value yes = Value::boolean(true);
        table.SetField("Name", Value("Entry"));
        table.SetField("Power", yes);
        table.SetField("DOMALL", yes);
        for (const char* day : {"Mo", "Tu", "We", "Th", "Fr", "Sa", "Su"})
            table.SetField(day, yes);
        table.SetField("Type1", Value("POP"));
        table.SetField("STime", Value::date(0));
        table.SetField("ETime", Value::date(0));
        for (const auto& [name, value] : fields)
            EXPECT_TRUE(table.SetField(name, value)) << name;
        EXPECT_TRUE(table.Update());
        return static_cast<long>(table.LastModified().number());
    }

    // Schedule Select of the three records, in order.
    std::vector<double> selected() {
        return {field(pop, "Schedule Select").number(), field(rock, "Schedule Select").number(),
                field(charted, "Schedule Select").number()};
    }

    void set_weight(const std::string& category, const char* weight, const char* count) {
        Recordset table = OpenRecordset(library, "DSearch");
        for (; !table.IsEOF(); table.MoveNext()) {
            if (table.Fields("Category").text() != category) continue;
            table.Edit();
            table.SetField("ValidFiles", Value(weight));
            table.SetField("ExcludeFiles", Value(count));
            table.Update();
        }
    }
    std::string count_of(const std::string& category) {
        Recordset table = OpenRecordset(library, "DSearch");
        for (; !table.IsEOF(); table.MoveNext()) {
            if (table.Fields("Category").text() == category)
                return table.Fields("ExcludeFiles").text();
        }
        return "";
    }

    long pop = 0, rock = 0, charted = 0;
    const std::vector<double> kPop{1, 0, 0};
    const std::vector<double> kNone{0, 0, 0};
};

TEST_F(ScheduleTest, WindowAcrossMidnightTestsTheDayOfTheLookAheadClock) {
    entry({{"STime", Value::date(TimeSerial(22, 0, 0))},
           {"ETime", Value::date(TimeSerial(2, 0, 0))},
           {"Tu", Value::boolean(false)}});
    set_now(46091.0 + TimeSerial(1, 0, 0));  // Tuesday 01:00
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
    set_now(46090.0 + TimeSerial(23, 0, 0));  // Monday 23:00
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kPop);
    EXPECT_EQ(schedule.Active_Next, 1);
    EXPECT_EQ(schedule.Active_Cats[1], "POP");
    EXPECT_EQ(schedule.Active_Cats[2], "NONE");
}

TEST_F(ScheduleTest, CuedMusicMakesALaterEntryRunAlready) {
    entry({{"STime", Value::date(TimeSerial(14, 20, 0))},
           {"ETime", Value::date(TimeSerial(16, 0, 0))}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
    station.Slot_Title[6] = "Long - Song";
    station.Slot_Length[6] = TimeSerial(0, 30, 0);
    schedule.Check_Sched();
    EXPECT_DOUBLE_EQ(station.Clock_Play, kNow + TimeSerial(0, 30, 0));
    EXPECT_EQ(selected(), kPop);
}

TEST_F(ScheduleTest, RunNowNeedsPowerAndThenIgnoresTimesAndDays) {
    const Value no = Value::boolean(false);
    entry({{"Power", no}, {"Run Now", Value::boolean(true)}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
    entry({{"Run Now", Value::boolean(true)},
           {"We", no},
           {"DOMALL", no},
           {"DOM1", Value(1)},
           {"STime", Value::date(TimeSerial(3, 0, 0))},
           {"ETime", Value::date(TimeSerial(4, 0, 0))}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kPop);
}

TEST_F(ScheduleTest, DayOfMonthIsTestedUnlessActiveAllMonth) {
    const long id = entry({{"DOMALL", Value::boolean(false)}, {"DOM1", Value(12)}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
    Recordset table = OpenRecordset(library, "Schedule");
    table.MoveLast();
    ASSERT_EQ(table.Fields("ID").number(), id);
    table.Edit();
    table.SetField("DOM1", Value(11));
    table.Update();
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kPop);
}

TEST_F(ScheduleTest, RunningFlagFollowsTheEntry) {
    entry({{"STime", Value::date(TimeSerial(13, 0, 0))},
           {"ETime", Value::date(TimeSerial(15, 0, 0))}});
    schedule.Check_Sched();
    EXPECT_EQ(schedule.Sched_Changed, 1);
    Recordset table = OpenRecordset(library, "Schedule");
    table.MoveLast();
    EXPECT_TRUE(table.Fields("DOWALL").truthy());
    schedule.Check_Sched();
    EXPECT_EQ(schedule.Sched_Changed, 0);
    set_now(kNow + TimeSerial(2, 0, 0));
    schedule.Check_Sched();
    EXPECT_EQ(schedule.Sched_Changed, 1);
    table.Refresh();
    table.MoveLast();
    EXPECT_FALSE(table.Fields("DOWALL").truthy());
}

TEST_F(ScheduleTest, UsePlActivatesEveryChartedRecordInsteadOfItsCategory) {
    entry({{"Use PL", Value::boolean(true)}, {"Type1", Value("ROCK")}});
    schedule.Check_Sched();
    EXPECT_EQ(schedule.All_Charts, 1);
    EXPECT_EQ(selected(), (std::vector<double>{0, 0, 1}));
}

TEST_F(ScheduleTest, SecondAndThirdCategoryFieldsCountToo) {
    entry({{"Type1", Value("ROCK")}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{0, 1, 0}));
}

// With the weights off, an entry's category reaches the library unchecked.
TEST_F(ScheduleTest, CategoriesMatchExactlyInCaseAndBlanks) {
    set_now(46092.0 + TimeSerial(0, 30, 0));
    entry({{"Type1", Value("pop")}});
    entry({{"Type1", Value("ROCK ")}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
    entry({{"Type1", Value("Country")}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{0, 0, 1}));
}

TEST_F(ScheduleTest, OverrideRunsOnlyMarkedEntriesUntilItEnds) {
    entry({{"Type1", Value("POP")}});
    entry({{"Type1", Value("ROCK")}, {"Power", Value::boolean(false)}, {"Override", Value(1)}});
    Form2 form(station, fake.services, pool);
    form.Form_Load();
    form.Combo1.ListIndex = 1;  // "00:10"
    form.click("Combo1");
    form.click("Command1");
    EXPECT_EQ(form.Command1.Caption, "Enabled");
    EXPECT_EQ(form.Command1.BackColor, Form2::kGreen);
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{0, 1, 0}));
    set_now(kNow + TimeSerial(0, 11, 0));
    schedule.Check_Sched();
    EXPECT_EQ(station.Over_On, 0);
    EXPECT_EQ(selected(), kPop);
}

TEST_F(ScheduleTest, OverrideWithNoMarkedEntryLeavesNothingScheduled) {
    entry({{"Type1", Value("POP")}});
    station.Over_On = 1;
    station.Over_End = kNow + 1;
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
}

TEST_F(ScheduleTest, CategoryAtItsWeightDropsOutWhileAnotherHasWeight) {
    entry({{"Type1", Value("POP")}});
    entry({{"Type1", Value("ROCK")}});
    set_weight("POP", "2", "0");
    set_weight("ROCK", "5", "1");
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{1, 1, 0}));
    EXPECT_EQ(schedule.Label1.Caption, "Weight Limiter ON");
    set_weight("POP", "2", "2");
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{0, 1, 0}));
    EXPECT_EQ(types.Label3.Caption, "ROCK, ");
    EXPECT_EQ(count_of("POP"), "2");
}

TEST_F(ScheduleTest, WeightCycleRestartsWhenAllAreSpentOrTheFallbackWasUsed) {
    entry({{"Type1", Value("POP")}});
    set_weight("POP", "2", "0");
    set_weight("ROCK", "5", "3");
    schedule.Check_Sched();
    set_weight("POP", "2", "2");
    schedule.Check_Sched();
    EXPECT_EQ(count_of("POP"), "0");
    EXPECT_EQ(count_of("ROCK"), "0");
    EXPECT_EQ(count_of("AM"), "99");
    EXPECT_EQ(selected(), kPop);
    set_weight("POP", "2", "1");
    station.Fall_Used = -1;
    schedule.Check_Sched();
    EXPECT_EQ(count_of("POP"), "0");
    EXPECT_EQ(station.Fall_Used, 0);
}

TEST_F(ScheduleTest, WeightsAreOffBeforeTheNewDayTime) {
    entry({{"Type1", Value("POP")}});
    set_weight("POP", "2", "0");
    set_weight("ROCK", "2", "1");
    entry({{"Type1", Value("ROCK")}});
    schedule.Check_Sched();  // ROCK still has weight, so no reset follows
    set_weight("POP", "2", "5");
    set_now(46092.0 + TimeSerial(0, 30, 0));
    schedule.Check_Sched();
    EXPECT_EQ(schedule.Label1.Caption, "Weight Limiter OFF");
    EXPECT_EQ(selected(), (std::vector<double>{1, 1, 0}));
}

TEST_F(ScheduleTest, ThirtyButtonsAtMostAndEachTogglesItsMark) {
    for (int i = 0; i < 30; ++i)
        entry({{"Name", Value("A rather long schedule name " + std::to_string(i))}});
    Form2 form(station, fake.services, pool);
    form.Form_Load();
    EXPECT_EQ(form.CmdCat(0).Caption, "Always");
    EXPECT_EQ(form.CmdCat(1).Caption, "A rather long sc");
    EXPECT_TRUE(form.CmdCat(29).Visible);
    EXPECT_EQ(form.find("CmdCat", 30), nullptr);
    form.click("CmdCat", 2);
    EXPECT_EQ(form.CmdCat(2).BackColor, Form2::kGreen);
    form.click("CmdCat", 2);
    EXPECT_NE(form.CmdCat(2).BackColor, Form2::kGreen);
}

// A category written by another tool gets its weight row when the screen shows it.
TEST_F(ScheduleTest, NewCategoryGetsAnUnlimitedWeight) {
    Recordset types_table = OpenRecordset(library, "Type Lookup");
    types_table.AddNew();
    types_table.SetField("Type", Value("Jazz"));
    types_table.Update();
    types.Form_Initialize();
    Recordset& listed = types.datPrimaryRS.Recordset();
    for (listed.MoveFirst(); listed.Fields("Type").text() != "Jazz"; listed.MoveNext()) {
    }
    types.datPrimaryRS_Reposition();
    Recordset weights = OpenRecordset(library, "DSearch");
    weights.MoveLast();
    EXPECT_EQ(weights.Fields("Category").text(), "Jazz");
    EXPECT_EQ(weights.Fields("ValidFiles").text(), "15");
    EXPECT_EQ(weights.Fields("ExcludeFiles").text(), "99");
}

}  // namespace
}  // namespace tavora
