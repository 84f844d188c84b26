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
        rock = add({{"Category", Value("Dance")}, {"Speed", Value("ROCK")}});
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
        table.SetField("STime", at(0));
        table.SetField("ETime", at(0));
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

    long pop = 0, rock = 0, charted = 0;
    const std::vector<double> kPop{1, 0, 0};
    const std::vector<double> kNone{0, 0, 0};
};

TEST_F(ScheduleTest, WindowAcrossMidnightTestsTheDayOfTheLookAheadClock) {
    entry({{"STime", at(22)}, {"ETime", at(2)}, {"Tu", Value::boolean(false)}});
    set_now(46091.0 + TimeSerial(1, 0, 0));  // Tuesday 01:00
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
    set_now(46090.0 + TimeSerial(23, 0, 0));  // Monday 23:00
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kPop);
    EXPECT_EQ(station.Active_Next, 1);
    EXPECT_EQ(station.Active_Cats[1], "POP");
    EXPECT_EQ(station.Active_Cats[2], "NONE");
}

TEST_F(ScheduleTest, CuedMusicMakesALaterEntryRunAlready) {
    entry({{"STime", at(14, 20)}, {"ETime", at(16)}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
    station.Slot_Title[6] = "Long - Song";
    station.Slot_Length[6] = TimeSerial(0, 30, 0);
    schedule.Check_Sched();
    EXPECT_DOUBLE_EQ(station.Clock_Play, kNow + TimeSerial(0, 30, 0));
    EXPECT_EQ(selected(), kPop);
}

TEST_F(ScheduleTest, PowerAndDayOfMonthGateAnEntryButRunNowIgnoresTimesAndDays) {
    const Value no = Value::boolean(false), yes = Value::boolean(true);
    entry({{"Power", no}, {"Run Now", yes}, {"Type1", Value("ROCK")}});
    entry({{"DOMALL", no}, {"DOM1", Value(12)}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), kNone);
    entry({{"Run Now", yes},
           {"Type1", Value("ROCK")},
           {"We", no},
           {"DOMALL", no},
           {"DOM1", Value(1)},
           {"STime", at(3)},
           {"ETime", at(4)}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{0, 1, 0}));
    entry({{"DOMALL", no}, {"DOM1", Value(11)}});
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{1, 1, 0}));
}

TEST_F(ScheduleTest, RunningFlagFollowsTheEntry) {
    entry({{"STime", at(13)}, {"ETime", at(15)}});
    schedule.Check_Sched();
    EXPECT_EQ(station.Sched_Changed, 1);
    Recordset table = OpenRecordset(library, "Schedule");
    table.MoveLast();
    EXPECT_TRUE(table.Fields("DOWALL").truthy());
    schedule.Check_Sched();
    EXPECT_EQ(station.Sched_Changed, 0);
    set_now(kNow + TimeSerial(2, 0, 0));
    schedule.Check_Sched();
    EXPECT_EQ(station.Sched_Changed, 1);
    table.Refresh();
    table.MoveLast();
    EXPECT_FALSE(table.Fields("DOWALL").truthy());
}

TEST_F(ScheduleTest, UsePlActivatesEveryChartedRecordInsteadOfItsCategory) {
    entry({{"Use PL", Value::boolean(true)}, {"Type1", Value("ROCK")}});
    schedule.Check_Sched();
    EXPECT_EQ(station.All_Charts, 1);
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

TEST_F(ScheduleTest, CategoryAtItsWeightDropsOutWhileAnotherHasWeightExceptBeforeTheNewDay) {
    entry({{"Type1", Value("POP")}});
    entry({{"Type1", Value("ROCK")}});
    set_weight("POP", "0", "2");
    set_weight("ROCK", "1", "5");
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{1, 1, 0}));
    EXPECT_EQ(schedule.Label1.Caption, "Weight Limiter ON");
    set_weight("POP", "2", "2");
    schedule.Check_Sched();
    EXPECT_EQ(selected(), (std::vector<double>{0, 1, 0}));
    EXPECT_EQ(types.Label3.Caption, "ROCK, ");
    EXPECT_EQ(weight_count("POP"), "2");
    set_weight("POP", "5");
    set_now(46092.0 + TimeSerial(0, 30, 0));
    schedule.Check_Sched();
    EXPECT_EQ(schedule.Label1.Caption, "Weight Limiter OFF");
    EXPECT_EQ(selected(), (std::vector<double>{1, 1, 0}));
}

TEST_F(ScheduleTest, WeightCycleRestartsWhenAllAreSpentOrTheFallbackWasUsed) {
    entry({{"Type1", Value("POP")}});
    set_weight("POP", "0", "2");
    set_weight("ROCK", "3", "5");
    schedule.Check_Sched();
    set_weight("POP", "2", "2");
    schedule.Check_Sched();
    EXPECT_EQ(weight_count("POP"), "0");
    EXPECT_EQ(weight_count("ROCK"), "0");
    EXPECT_EQ(weight_count("AM"), "99");
    EXPECT_EQ(selected(), kPop);
    set_weight("POP", "1", "2");
    station.Fall_Used = -1;
    schedule.Check_Sched();
    EXPECT_EQ(weight_count("POP"), "0");
    EXPECT_EQ(station.Fall_Used, 0);
}

}  // namespace
}  // namespace tavora
