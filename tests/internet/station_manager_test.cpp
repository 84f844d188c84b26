#include "internet/station_manager.h"

#include <gtest/gtest.h>

#include "core/fake_services.h"
#include "runtime/dates.h"
#include "runtime/text_file.h"

namespace tavora {
namespace {

class StationManager : public ::testing::Test {
  protected:
    StationManager() : fake(46091.5), link(station, fake.services) { station.Run_Mode = 0; }

    std::filesystem::path order() const { return fake.home() / "qxsm.ini"; }
    void write_order(const std::string& text) { fake.folder.Write("qxsm.ini", text); }

    FakeServices fake;
    Station station;
    StationManagerLink link;
};

constexpr const char* kFullOrder =
    "\"Exit\",False,\"Exit2\",True,\"Show\",x,y,\"Start\",#9:30:00 PM#,\"End\",#10:15:00 PM#,"
    "z,#3/11/2026#\r\n\"BP\",True,4,\"CD\",True,\"Skip\",True,\"Spare\",w,\"Play\",True\r\n";

TEST_F(StationManager, AnOrderIsReadIntoTheBreakValuesAndDeleted) {
    write_order(kFullOrder);
    link.SM_Check();
    EXPECT_FALSE(std::filesystem::exists(order()));
    EXPECT_EQ(station.SM_State, 1);
    EXPECT_EQ(station.Live_Mode, 1);
    EXPECT_FALSE(station.Brk_Exit1);
    EXPECT_TRUE(station.Brk_Exit2);
    EXPECT_DOUBLE_EQ(station.Break_Start, TimeSerial(21, 30, 0));
    EXPECT_DOUBLE_EQ(station.Break_End, TimeSerial(22, 15, 0));
    EXPECT_DOUBLE_EQ(station.Break_Date, DateSerial(2026, 3, 11));
    EXPECT_TRUE(station.Brk_BP);
    EXPECT_EQ(station.Brk_BPSongs, 4);
    EXPECT_TRUE(station.Brk_CD);
    EXPECT_TRUE(station.Brk_Skip);
    EXPECT_TRUE(station.Brk_Play);
}

TEST_F(StationManager, AShortOrDamagedFileArmsWhatItGave) {
    write_order("\"Exit\",False,\"Exit2\",False,\"Show\",x,y,\"Start\",#9:30:00 PM#\r\n");
    link.SM_Check();
    EXPECT_EQ(station.SM_State, 1);
    EXPECT_DOUBLE_EQ(station.Break_Start, TimeSerial(21, 30, 0));
    EXPECT_FALSE(std::filesystem::exists(order()));

    station.SM_State = 3;
    write_order("\"Exit\",True,\"Exit2\",False,\"Show\",x,y,\"Start\",#not a time#,\"End\"");
    link.SM_Check();
    EXPECT_EQ(station.SM_State, 2);
    EXPECT_EQ(station.Live_Mode, 2);
    EXPECT_TRUE(station.Brk_Exit1);
    EXPECT_DOUBLE_EQ(station.Break_Start, TimeSerial(21, 30, 0));  // the bad time ended the read
}

TEST_F(StationManager, ASecondOrderWaitsAndRemoteUseLeavesItAlone) {
    station.SM_State = 1;
    write_order(kFullOrder);
    link.SM_Check();
    EXPECT_TRUE(std::filesystem::exists(order()));
    EXPECT_FALSE(station.Brk_Play);

    station.SM_State = 0;
    station.Run_Mode = 1;
    link.SM_Check();
    EXPECT_TRUE(std::filesystem::exists(order()));
    EXPECT_EQ(station.SM_State, 0);
}

TEST_F(StationManager, TheMenuStartsTheProgramOrSaysItIsMissing) {
    link.Stn_Mgr_Click();
    ASSERT_EQ(fake.launcher.started.size(), 1u);
    EXPECT_EQ(fake.launcher.started[0], "\"" + (fake.home() / "tqxst.exe").string() + "\"");
    EXPECT_EQ(fake.dialogs.shown().size(), 1u);
    fake.launcher.succeed = false;
    link.Stn_Mgr_Click();
    EXPECT_EQ(fake.dialogs.shown().back().request.text,
              "Tavora Station Manager Not Found! Please Got to our web site and install.");
}

}  // namespace
}  // namespace tavora
