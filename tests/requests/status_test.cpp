#include "request_fixture.h"

namespace tavora {
namespace {

class StatusFiles : public RequestFixture {
  protected:
    void SetUp() override {
        for (int i = 0; i < 20; ++i)
            add("Song " + std::to_string(100 + i));
        request->PlayState = [this](int slot) { return slot == playing ? 2 : 0; };
        for (int i = 1; i <= 11; ++i)
            request->Stat_Hist[i] = "Old " + std::to_string(i);
        station.Slot_Title[3] = "Now - Artist";
        station.Ply_Now = 3;
    }
    // Loading writes once with an empty status line; this writes again.
    void load() {
        request->Form_Load();
        request->Label15.Caption = "Select A Song";
        request->Stat_Write();
    }
    std::vector<std::string> status() { return lines(fake.home() / "tqxstat.txt"); }
    int playing = 3;
};

TEST_F(StatusFiles, LinesWithBlockPartyWithRequestsAndLessForLateSlots) {
    station.BP_On = true;
    station.BP_Block = 3;
    load();
    std::vector<std::string> expected = {
        "Select A Song ** We are in the middle of a TQXMS Exclusive Block Party playing  3 in a "
        "row by your favorite artist!"};
    for (int i = 3; i <= 11; ++i)
        expected.push_back("Old " + std::to_string(i));
    expected.insert(expected.end(), {"Now - Artist", "Now - Artist",
                                     "TQXAMS Plays All The Hits! Current Time: 10:00:00 AM",
                                     "Web requests are delayed 1hr due to RIAA rules"});
    EXPECT_EQ(status(), expected);
    EXPECT_EQ(lines(fake.home() / "tqxsrdy.txt"),
              std::vector<std::string>{"3/10/2026 10:00:00 AM"});
    EXPECT_EQ(request->Stat_Slot, 3);

    station.Req_Avail = true;
    station.Req_Open = 12;
    request->Stat_Write();
    EXPECT_EQ(status()[0],
              "Select A Song ** We have  12 Requests in our cue. We Are Playing Back your request "
              "right now!");
    EXPECT_EQ(status()[10], "Now - Artist");  // the history moved on by one

    // Late slots drop the trailing lines.
    station.Req_Avail = station.BP_On = false;
    station.Slot_Title[11] = "Eleven";
    station.Ply_Now = playing = 11;
    request->Stat_Write();
    EXPECT_EQ(status()[0], "Select A Song");
    EXPECT_EQ(status().size(), 13u);
    station.Ply_Now = playing = 12;
    request->Stat_Write();
    EXPECT_EQ(status().size(), 12u);
}

TEST_F(StatusFiles, NoPlayerPlayingWritesNothingButTheListPages) {
    playing = 0;
    request->Idle_Count = 1;
    request->Form_Load();
    EXPECT_FALSE(std::filesystem::exists(fake.home() / "tqxstat.txt"));
    EXPECT_EQ(request->List_Top, 14);
    EXPECT_EQ(request->RB(1).Caption, "Song 114");
}

using Marquee = RequestFixture;

TEST_F(Marquee, WaitLineShowsOneTimeWhenBothAreEqual) {
    add("Song");
    request->Form_Load();
    station.Look_Play = TimeSerial(0, 5, 0);
    station.Look_Sched = TimeSerial(0, 20, 0);
    request->TimerMar_Timer();
    EXPECT_EQ(request->Label15.Caption, "Wait For Next Request Is: 00:05:00 to: 00:20:00");
    station.Look_Sched = station.Look_Play;
    station.BP_On = true;
    request->TimerMar_Timer();
    EXPECT_EQ(request->Label15.Caption, "Wait For Next Request Is: 00:05:00");
    EXPECT_EQ(request->CmdBP.Caption, "BP 2");
}

TEST_F(Marquee, RemoteUseNeverStartsTheDailyRunAndAutoStartRuns) {
    add("Song");
    int exports = 0, runs = 0;
    request->wiz_it = [&] { ++exports; };
    request->Run_Command = [&] { ++runs; };
    request->Form_Load();
    station.Run_Mode = 2;
    request->TimerMar_Timer();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(station.Run_Mode, 0);
    // The auto start used up the start-up arming.
    request->TimerMar_Timer();
    EXPECT_EQ(exports, 0);
    // Armed between 00:01 and 00:30, started after 00:30.
    fake.clock.Advance((14 * 60 + 10) * 60'000);
    request->TimerMar_Timer();
    EXPECT_EQ(station.Auto_PL, 0);
    EXPECT_EQ(exports, 0);
    fake.clock.Advance(21 * 60'000);
    request->TimerMar_Timer();
    EXPECT_EQ(exports, 1);
    EXPECT_EQ(station.Auto_PL, 1);
    station.Run_Mode = 1;
    station.Auto_PL = 0;
    request->TimerMar_Timer();
    EXPECT_EQ(exports, 1);
}

class December : public RequestFixture {
  protected:
    December() : RequestFixture(DateSerial(2026, 12, 25) + 0.5) {}
};

TEST_F(December, HolidayMusicIsOnTheListUntilThe25th) {
    request->Form_Load();
    EXPECT_EQ(request->Command10.Caption, "H On");
    fake.clock.Advance(24 * 3'600'000LL);
    Request next_day(station, fake.services, pool);
    next_day.Form_Load();
    EXPECT_EQ(next_day.Command10.Caption, "H Off");
}

}  // namespace
}  // namespace tavora
