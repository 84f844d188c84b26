#include "selection_fixture.h"

namespace tavora {
namespace {

// The editor lists the entries by name; the library brings "Always".
class ScheduleEditor : public SelectionTest {
  protected:
    void SetUp() override {
        SelectionTest::SetUp();
        always = add({{"Category", Value("Always")}});
    }
    // Types a new entry into the form tab and stores it.
    void type_entry(const std::string& name, const std::string& start, const std::string& end) {
        schedule.click("cmdAdd");
        schedule.set("txtFields", 0, name);
        schedule.set("chkFields", 0, "1");
        schedule.set("txtFields", 1, start);
        schedule.set("txtFields", 2, end);
        schedule.DBCombo1.Text = "POP";
        schedule.click("cmdUpdate");
    }
    int entries_named(const std::string& name) { return rows_with("Schedule", "Name", name); }
    const std::string& last_message() { return fake.dialogs.shown().back().request.text; }
    long always = 0;
};

TEST_F(ScheduleEditor, AlwaysIsLockedAndCannotBeDeleted) {
    ASSERT_EQ(schedule.txtFields(0).Text, "Always");
    EXPECT_FALSE(schedule.txtFields(0).Enabled);
    EXPECT_FALSE(schedule.cmdDelete.Visible);
    EXPECT_EQ(schedule.datPrimaryRS.Caption, "Record: 1");
    schedule.click("cmdDelete");
    EXPECT_EQ(entries_named("Always"), 1);
    // A rename typed into the locked box is not stored either.
    schedule.set("txtFields", 0, "Sometimes");
    schedule.click("cmdUpdate");
    EXPECT_EQ(entries_named("Always"), 1);

    type_entry("Breakfast", "06:00", "09:00");
    EXPECT_EQ(schedule.txtFields(0).Text, "Breakfast");
    EXPECT_TRUE(schedule.cmdDelete.Visible);
    EXPECT_TRUE(schedule.txtFields(0).Enabled);
    EXPECT_EQ(schedule.datPrimaryRS.Caption, "Record: 2") << "by name: Always, Breakfast";
    schedule.click("datPrimaryRS", 0);
    EXPECT_FALSE(schedule.cmdDelete.Visible);
    schedule.click("datPrimaryRS", 3);
    schedule.click("cmdDelete");
    EXPECT_EQ(entries_named("Breakfast"), 0);
    EXPECT_EQ(schedule.txtFields(0).Text, "Always");
}

TEST_F(ScheduleEditor, BoxesFollowTheEntryAndTheTabs) {
    schedule.click("cmdAdd");
    EXPECT_FALSE(schedule.txtFields(6).Visible) << "a new entry is active all month";
    schedule.set("chkFields", 5, "0");
    EXPECT_TRUE(schedule.txtFields(6).Visible);
    EXPECT_TRUE(schedule.UpDown1.Visible);
    schedule.set("txtFields", 6, "31");
    schedule.fire("UpDown1", -1, "UpClick");
    EXPECT_EQ(schedule.txtFields(6).Text, "31");
    schedule.fire("UpDown1", -1, "DownClick");
    EXPECT_EQ(schedule.txtFields(6).Text, "30");
    schedule.set("txtFields", 0, "Charts");
    schedule.set("chkFields", 1, "1");  // Use PL: no category needed
    schedule.click("cmdUpdate");
    EXPECT_TRUE(fake.dialogs.shown().empty()) << last_message();
    EXPECT_FALSE(schedule.DBCombo1.Enabled);
    EXPECT_TRUE(schedule.txtFields(6).Visible);
    EXPECT_TRUE(schedule.txtFields(6).Enabled) << "DOMALL is off";

    schedule.SSTab1.Value = 1;
    schedule.click("SSTab1");
    EXPECT_FALSE(schedule.cmdAdd.Visible);
    EXPECT_FALSE(schedule.cmdDelete.Visible);
    schedule.SSTab1.Value = 0;
    schedule.click("SSTab1");
    EXPECT_TRUE(schedule.cmdAdd.Visible);
    EXPECT_TRUE(schedule.cmdDelete.Visible);
}

TEST_F(ScheduleEditor, WhatCannotBeReadIsRefusedAndAWindowAcrossMidnightIsStored) {
    type_entry("", "06:00", "09:00");
    EXPECT_EQ(last_message(), "Enter a Name for this schedule");
    schedule.click("cmdRefresh");
    type_entry("Late", "25:70", "02:00");
    EXPECT_EQ(last_message(), "Enter the times as hh:mm, from 00:00 to 23:59");
    schedule.click("cmdRefresh");
    EXPECT_EQ(entries_named("Late"), 0);
    const std::size_t asked = fake.dialogs.shown().size();
    type_entry("Late", "22:00", "02:00");
    EXPECT_EQ(fake.dialogs.shown().size(), asked);
    EXPECT_EQ(entries_named("Late"), 1);
}

// A click in column 0 switches the entry off; the next check stops it.
TEST_F(ScheduleEditor, GridClicksTogglePowerAndRunNowOnly) {
    schedule.Check_Sched();
    ASSERT_EQ(field(always, "Schedule Select").number(), 1);
    schedule.click("DataGrid1", 1);
    schedule.click("DataGrid1", 0);
    Recordset entry = OpenRecordset(library, "Schedule");
    EXPECT_FALSE(entry.Fields("Power").truthy());
    EXPECT_EQ(schedule.chkFields(0).Value, 0);
    schedule.Check_Sched();
    EXPECT_EQ(field(always, "Schedule Select").number(), 0);
    EXPECT_EQ(schedule.Sched_Changed, 1);
    const bool run_now = entry.Fields("Run Now").truthy();
    schedule.click("DataGrid1", 3);
    entry = OpenRecordset(library, "Schedule");
    EXPECT_EQ(entry.Fields("Run Now").truthy(), !run_now);
    EXPECT_FALSE(entry.Fields("Power").truthy());
}

}  // namespace
}  // namespace tavora
