#include "internet/station_manager.h"

#include "internet_fixture.h"

namespace tavora {
namespace {

class StationManager : public InternetFixture {
  protected:
    bool order_waiting() const { return std::filesystem::exists(fake.home() / "qxsm.ini"); }
    void write_order(const std::string& text) { fake.folder.Write("qxsm.ini", text); }
    StationManagerLink link{station, fake.services};
};

TEST_F(StationManager, AnOrderIsReadIntoTheBreakValuesAndDeleted) {
    write_order(
        "\"Exit\",False,\"Exit2\",True,\"Show\",x,y,\"Start\",#9:30:00 PM#,\"End\",#10:15:00 PM#,"
        "z,#3/11/2026#\r\n\"BP\",True,4,\"CD\",True,\"Skip\",True,\"Spare\",w,\"Play\",True\r\n");
    link.SM_Check();
    EXPECT_FALSE(order_waiting());
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

TEST_F(StationManager, AShortOrDamagedFileArmsWhatItGaveAndRemoteUseLeavesItAlone) {
    write_order("\"Exit\",False,\"Exit2\",False,\"Show\",x,y,\"Start\",#9:30:00 PM#\r\n");
    link.SM_Check();
    EXPECT_EQ(station.SM_State, 1);
    EXPECT_DOUBLE_EQ(station.Break_Start, TimeSerial(21, 30, 0));
    EXPECT_FALSE(order_waiting());

    station.SM_State = 3;
    write_order("\"Exit\",True,\"Exit2\",False,\"Show\",x,y,\"Start\",#not a time#,\"End\"");
    link.SM_Check();
    EXPECT_EQ(station.SM_State, 2);
    EXPECT_EQ(station.Live_Mode, 2);
    EXPECT_TRUE(station.Brk_Exit1);
    EXPECT_DOUBLE_EQ(station.Break_Start, TimeSerial(21, 30, 0));  // the bad time ended the read

    station.SM_State = 0;
    station.Run_Mode = 1;
    write_order("\"Exit\",False");
    link.SM_Check();
    EXPECT_TRUE(order_waiting());
    EXPECT_EQ(station.SM_State, 0);
}

}  // namespace
}  // namespace tavora
