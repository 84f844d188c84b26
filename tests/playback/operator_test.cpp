#include <gtest/gtest.h>

#include "bank_fixture.h"

namespace tavora::test {
namespace {

using Operator = BankTest;

TEST_F(Operator, TheStationManagersBreakHoldsTheSetUntilItsEnd) {
    start_set();
    const double today = DateValueOf(fake.clock.Now());
    const double time = TimeValueOf(fake.clock.Now());
    station.Live_Mode = 1;
    station.SM_State = 1;
    station.Break_Start = time + 10.0 / 86400;
    station.Break_End = time + 300.0 / 86400;
    station.Break_Date = today;
    station.Brk_BP = true;
    station.Brk_BPSongs = 3;
    wait(11);
    EXPECT_EQ(station.Live_Mode, 2);
    EXPECT_EQ(station.Req_Hold, 1) << "requests wait out the break";
    EXPECT_EQ(break_button.Caption, "Resume");
    EXPECT_EQ(playback->Pause_At, 2);
    EXPECT_TRUE(station.BP_On);
    EXPECT_EQ(station.BP_Block, 3);

    // In the break the song plays out and nothing follows it.
    wait(200);
    EXPECT_TRUE(air.starts(2).empty());
    EXPECT_FALSE(plays(1));

    ASSERT_TRUE(wait_until([&] { return plays(2); }, 120));
    EXPECT_NEAR(now() - air.starts(1)[0], 300, 3);
    EXPECT_EQ(break_button.Caption, "Break");
    EXPECT_EQ(station.Live_Mode, 0);
    EXPECT_EQ(station.Req_Hold, 0);
    wait(1);
    EXPECT_EQ(station.Ply_Now, 2) << "the transport takes the restarted slot on";
}

TEST_F(Operator, ASkipWhileTheSeventhPlaysStopsIt) {
    station.Ply7_On = 1;
    start_set();
    ASSERT_TRUE(wait_until([&] { return plays(7); }, 1300));
    fake.dialogs.Queue(Answer::Yes);
    wait(20);
    const int active = station.Ply_Now;
    playback->Skip_One();
    EXPECT_FALSE(plays(7));
    EXPECT_EQ(station.Slot_Started[14], 1);
    EXPECT_EQ(station.Slot_Ready[14], 0);
    EXPECT_TRUE(station.Slot_FadeOut[7]) << "written into slot 7, as it stands";
    EXPECT_EQ(station.Ply_Now, active);
}

TEST_F(Operator, MSevenModeClearsTheSettleCountWhateverTheSeventhPlayerDoes) {
    station.Ply7_On = 1;
    station.Ply7_View = false;
    start_set();
    ASSERT_TRUE(viewer.mode_m7());
    ASSERT_FALSE(plays(7));
    playback->Settle_Count = 4;
    playback->APlayer7_Timer();
    EXPECT_EQ(playback->Settle_Count, 0);
}

TEST_F(Operator, ARestartAsksFirstAndCancelLeavesTheSetPlaying) {
    start_set();
    const std::size_t picked = air.commits.size();
    fake.dialogs.Queue(Answer::Cancel);
    playback->Run();
    EXPECT_EQ(asked().title, "UNLOAD WARNING");
    EXPECT_EQ(playback->Ply_View, 1);
    EXPECT_TRUE(plays(1));
    EXPECT_EQ(air.commits.size(), picked);

    fake.dialogs.Queue(Answer::OK);
    playback->Run();
    EXPECT_FALSE(plays(1));
    EXPECT_EQ(air.commits.size(), picked + 6);
    ASSERT_TRUE(wait_until([&] { return air.starts(1).size() == 2; }, 10));
}

TEST_F(Operator, PlayerErrorsShowTheirWordsAndTheSeventhOnlyWhenItIsOn) {
    make_probe();
    const std::string broken = fake.folder.Write("broken.mp3", "no audio").string();
    playback->Players(3).Open(broken);
    playback->Players(7).Open(broken);
    wait(0.1);
    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(asked().text.substr(asked().text.size() - 9), " Player 3");
    station.Ply7_On = 1;
    playback->Players(7).Open(broken);
    wait(0.1);
    EXPECT_EQ(asked().text.substr(asked().text.size() - 9), " Player 7");
}

TEST_F(Operator, TheOnAirPopUpCountsDownToTheMixAndThroughTheIntro) {
    station.Live_Pop = 1;
    selection.songs[1].mix_in = 8;
    start_set();
    wait(10);
    EXPECT_FALSE(playback->on_air.Loaded) << "mid-song";
    ASSERT_TRUE(wait_until([&] { return playback->on_air.Loaded; }, 150));
    FrmOnAir& pop = playback->on_air;
    EXPECT_TRUE(pop.Visible);
    EXPECT_EQ(pop.Label1.Caption, "SOON");
    EXPECT_EQ(pop.LblInValue.Caption, "20");
    EXPECT_EQ(pop.LblTalkValue.Caption, "9") << "mix-out 1 and an intro of 8";
    EXPECT_EQ(pop.LblComing(0).Caption, "song150.mp3");
    EXPECT_EQ(pop.LblComing(1).Caption, "song165.mp3");
    EXPECT_TRUE(pop.CmdPause.Visible);

    ASSERT_TRUE(wait_until([&] { return station.Ply_Now == 2; }, 25));
    wait(1);
    EXPECT_EQ(pop.Label1.Caption, "N O W");
    EXPECT_FALSE(pop.LblIn.Visible);
    EXPECT_TRUE(pop.LblLeft.Visible);
    EXPECT_NEAR(std::stoi(pop.LblLeftValue.Caption), 7, 1) << "the intro still to run";

    pop.click("CmdPause");
    EXPECT_EQ(playback->Pause_At, 3);
    EXPECT_EQ(pop.LblPause.Caption, "Plyr3 will pause, Press");
    EXPECT_TRUE(pop.CmdResume.Visible);
}

}  // namespace
}  // namespace tavora::test
