#include "internet_fixture.h"

namespace tavora {
namespace {

using MailfrmWindow = InternetFixture;

TEST_F(MailfrmWindow, SettingsSurviveARestartAndACommaShiftsThem) {
    ASSERT_TRUE(write_default_tqxiis(fake.home() / "tqxiis.ini"));
    mail.TQXi_ini();
    EXPECT_FALSE(station.IIS_On);
    EXPECT_EQ(mail.IIS_Minutes, 10);
    EXPECT_EQ(mail.IIS_File, "Mymail.mbx");

    station.IIS_On = true;
    mail.IIS_Minutes = 15;
    mail.IIS_Line = 40;
    mail.IIS_Saved = 42;
    mail.Result(5).Caption = "Latest - 3/10/2026";
    mail.Label14.Caption = "17";
    ASSERT_TRUE(mail.TQXi_Sav());
    EXPECT_EQ(lines(fake.home() / "tqxiis.ini").size(), 13u);
    Station again;
    again.Act_Db = station.Act_Db;
    Mailfrm reopened(again, fake.services, pool);
    reopened.Form_Load();
    EXPECT_TRUE(reopened.TimerMail->Enabled());
    EXPECT_EQ(reopened.Check1.Value, 1);
    EXPECT_EQ(reopened.IIS_Minutes, 15);
    EXPECT_EQ(reopened.IIS_Line, 0);  // the opening starts over from the saved copy
    EXPECT_EQ(reopened.Label12.Caption, "42");
    EXPECT_EQ(reopened.Result(5).Caption, "Latest - 3/10/2026");
    EXPECT_EQ(reopened.Label14.Caption, "17");

    mail.Result(5).Caption = "One, Two";
    ASSERT_TRUE(mail.TQXi_Sav());
    mail.IIS_Saved = 0;
    mail.TQXi_ini();
    EXPECT_EQ(mail.Result(5).Caption, "One");
    EXPECT_EQ(mail.Result(6).Caption, "Two");
    EXPECT_EQ(mail.IIS_Saved, 0);  // the shifted items fail to convert and end the read
}

TEST_F(MailfrmWindow, TimerCountsDownThenChecks) {
    station.IIS_On = true;
    mail.IIS_Minutes = 2;
    mail.TQXi_Sav();
    mail.Form_Load();
    std::vector<std::string> seen;
    for (int tick = 0; tick < 11; ++tick) {
        fake.loop.run_for(10'000);
        seen.push_back(mail.Label4.Caption);
    }
    EXPECT_EQ(seen[0], "Min Left till next update =  2:90");
    EXPECT_EQ(seen[3], "Min Left till next update =  2:59");
    EXPECT_EQ(seen[9], "Min Left till next update =  1");
    EXPECT_EQ(seen[10], "Min Left till next update =  1:59");
    for (int tick = 0; tick < 6; ++tick)
        fake.loop.run_for(10'000);
    // No newreq.tqf: the check came and took its error path.
    EXPECT_EQ(mail.Label4.Caption, "ERROR: Problem with data file - Correcting next load");
    EXPECT_EQ(mail.IIS_MinLeft, 2);

    mail.click("Command1");
    write_items({"None"});
    fake.loop.run_for(10'000);
    EXPECT_EQ(mail.Label4.Caption, "Complete with Upload");
}

}  // namespace
}  // namespace tavora
