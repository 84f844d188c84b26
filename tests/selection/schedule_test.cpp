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
        set(1, "Power", Value::boolean(false), "Schedule");
        pop = add({{"Category", Value("POP")}});
        rock = add({{"Category", Value("Dance")}, {"Speed", Value("ROCK")}});
        charted = add({{"Category", Value("Country")}, {"D40", Value(4)}});
    }

    long entry(Fields fields) {
        Recordset table = OpenRecordset(library, "Schedule");
        table.AddNew();
        for (const char* flag : {"Power", "DOMALL", "Mo", "Tu", "We", "Th", "Fr", "Sa", "Su"})
            table.SetField(flag, Value::boolean(true));
        table.SetField("Name", Value("Entry"));
        table.SetField("Type1", Value("POP"));
        table.SetField("STime", hm(0));
        table.SetField("ETime", hm(0));
        for (const auto& [name, value] : fields)
            EXPECT_TRUE(table.SetField(name, value)) << name;
        EXPECT_TRUE(table.Update());
        return static_cast<long>(table.LastModified().number());
    }

    // Checks the schedule and gives Schedule Select of the three records, in order.
    std::vector<double> selected() {
        schedule.Check_Sched();
        return {field(pop, "Schedule Select").number(), field(rock, "Schedule Select").number(),
                field(charted, "Schedule Select").number()};
    }
    std::string count_of(const std::string& category) { return weights()[category].second; }

    long pop = 0, rock = 0, charted = 0;
    const std::vector<double> kPop{1, 0, 0}, kRock{0, 1, 0}, kCharted{0, 0, 1}, kNone{0, 0, 0};
    const Value no = Value::boolean(false);
};

TEST_F(ScheduleTest, WindowAcrossMidnightTestsTheDayOfTheLookAheadClock) {
    entry({{"STime", hm(22)}, {"ETime", hm(2)}, {"Tu", no}});
    set_now(46091.0 + TimeSerial(1, 0, 0));  // Tuesday 01:00
    EXPECT_EQ(selected(), kNone);
    set_now(46090.0 + TimeSerial(23, 0, 0));  // Monday 23:00
    EXPECT_EQ(selected(), kPop);
    EXPECT_EQ(schedule.Active_Next, 1);
    EXPECT_EQ(schedule.Active_Cats[1], "POP");
    EXPECT_EQ(schedule.Active_Cats[2], "NONE");
}

TEST_F(ScheduleTest, CuedMusicMakesALaterEntryRunAlready) {
    entry({{"STime", hm(14, 20)}, {"ETime", hm(16)}});
    EXPECT_EQ(selected(), kNone);
    station.Slot_Title[6] = "Long - Song";
    station.Slot_Length[6] = TimeSerial(0, 30, 0);
    EXPECT_EQ(selected(), kPop);
    EXPECT_DOUBLE_EQ(station.Clock_Play, kNow + TimeSerial(0, 30, 0));
}

TEST_F(ScheduleTest, RunNowNeedsPowerAndThenIgnoresTimesAndDays) {
    entry({{"Power", no}, {"Run Now", Value::boolean(true)}});
    EXPECT_EQ(selected(), kNone);
    entry({{"Run Now", Value::boolean(true)},
           {"We", no},
           {"DOMALL", no},
           {"DOM1", Value(1)},
           {"STime", hm(3)},
           {"ETime", hm(4)}});
    EXPECT_EQ(selected(), kPop);
}

TEST_F(ScheduleTest, DayOfMonthIsTestedUnlessActiveAllMonth) {
    const long id = entry({{"DOMALL", no}, {"DOM1", Value(12)}});
    EXPECT_EQ(selected(), kNone);
    set(id, "DOM1", Value(11), "Schedule");
    EXPECT_EQ(selected(), kPop);
}

TEST_F(ScheduleTest, RunningFlagFollowsTheEntry) {
    const long id = entry({{"STime", hm(13)}, {"ETime", hm(15)}});
    schedule.Check_Sched();
    EXPECT_EQ(schedule.Sched_Changed, 1);
    EXPECT_TRUE(row(id, "Schedule").Fields("DOWALL").truthy());
    schedule.Check_Sched();
    EXPECT_EQ(schedule.Sched_Changed, 0);
    set_now(kNow + TimeSerial(2, 0, 0));
    schedule.Check_Sched();
    EXPECT_EQ(schedule.Sched_Changed, 1);
    EXPECT_FALSE(row(id, "Schedule").Fields("DOWALL").truthy());
}

TEST_F(ScheduleTest, UsePlActivatesEveryChartedRecordInsteadOfItsCategory) {
    entry({{"Use PL", Value::boolean(true)}, {"Type1", Value("ROCK")}});
    EXPECT_EQ(selected(), kCharted);
    EXPECT_EQ(schedule.All_Charts, 1);
}

// With the weights off, an entry's category reaches the library unchecked:
// the second and third category fields count, in exact case and blanks.
TEST_F(ScheduleTest, CategoriesMatchAnyCategoryFieldExactlyInCaseAndBlanks) {
    const long speed = entry({{"Type1", Value("ROCK")}});
    EXPECT_EQ(selected(), kRock);
    set(speed, "Power", no, "Schedule");
    set_now(46092.0 + TimeSerial(0, 30, 0));
    entry({{"Type1", Value("pop")}});
    entry({{"Type1", Value("ROCK ")}});
    EXPECT_EQ(selected(), kNone);
    entry({{"Type1", Value("Country")}});
    EXPECT_EQ(selected(), kCharted);
}

TEST_F(ScheduleTest, OverrideRunsOnlyMarkedEntriesAndNothingWithoutOne) {
    entry({{"Type1", Value("POP")}});
    station.Over_On = 1;
    station.Over_End = kNow + 1;
    EXPECT_EQ(selected(), kNone);
    station.Over_On = 0;
    entry({{"Type1", Value("ROCK")}, {"Power", no}, {"Override", Value(1)}});
    Form2 form(station, fake.services, pool);
    form.Form_Load();
    form.Combo1.ListIndex = 1;  // "00:10"
    form.click("Combo1");
    form.click("Command1");
    EXPECT_EQ(form.Command1.Caption, "Enabled");
    EXPECT_EQ(form.Command1.BackColor, Form2::kGreen);
    EXPECT_EQ(selected(), kRock);
    set_now(kNow + TimeSerial(0, 11, 0));
    EXPECT_EQ(selected(), kPop);
    EXPECT_EQ(station.Over_On, 0);
}

TEST_F(ScheduleTest, CategoryAtItsWeightDropsOutWhileAnotherHasWeightButNotBeforeTheNewDay) {
    entry({{"Type1", Value("POP")}});
    entry({{"Type1", Value("ROCK")}});
    set_weight("POP", "2", "0");
    set_weight("ROCK", "5", "1");
    EXPECT_EQ(selected(), (std::vector<double>{1, 1, 0}));
    EXPECT_EQ(schedule.Label1.Caption, "Weight Limiter ON");
    set_weight("POP", "2", "2");
    EXPECT_EQ(selected(), kRock);
    EXPECT_EQ(types.Label3.Caption, "ROCK, ");
    EXPECT_EQ(count_of("POP"), "2");
    // Before the new day's time the spent category runs again.
    set_now(46092.0 + TimeSerial(0, 30, 0));
    EXPECT_EQ(selected(), (std::vector<double>{1, 1, 0}));
    EXPECT_EQ(schedule.Label1.Caption, "Weight Limiter OFF");
}

TEST_F(ScheduleTest, WeightCycleRestartsWhenAllAreSpentOrTheFallbackWasUsed) {
    entry({{"Type1", Value("POP")}});
    set_weight("POP", "2", "0");
    set_weight("ROCK", "5", "3");
    schedule.Check_Sched();
    set_weight("POP", "2", "2");
    EXPECT_EQ(selected(), kPop);
    const auto counts = weights();
    EXPECT_EQ(counts.at("POP").second, "0");
    EXPECT_EQ(counts.at("ROCK").second, "0");
    EXPECT_EQ(counts.at("AM").second, "99");
    set_weight("POP", "2", "1");
    station.Fall_Used = -1;
    schedule.Check_Sched();
    EXPECT_EQ(count_of("POP"), "0");
    EXPECT_EQ(station.Fall_Used, 0);
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
    EXPECT_EQ(weights()["Jazz"], (Weight{"15", "99"}));
}

}  // namespace
}  // namespace tavora
