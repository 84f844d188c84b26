#include "core/station.h"

#include <gtest/gtest.h>

namespace tavora {
namespace {

TEST(Station, DefaultsTakeTheStartMomentAndAClearedSlotIsEmpty) {
    Station station;
    station.Ply_Now = 3;
    station.Slot_File[4] = "c:\\x.mp3";
    const double now = 46349.75;  // 2026-11-23 18:00
    station.set_defaults(now);
    EXPECT_EQ(station.Ply_Now, 6);
    EXPECT_EQ(station.Slot_File[4], "");
    EXPECT_DOUBLE_EQ(station.Over_End, now);
    EXPECT_DOUBLE_EQ(station.Clock_Play, 46349.0);
    EXPECT_EQ(station.Log_Name, "C:\\tavora\\qxl1123.log");
    EXPECT_EQ(station.Active_Cats[100], "NONE");
    EXPECT_EQ(station.Stat_Hist[11], "None");

    station.Slot_Ready[9] = 3;
    station.Slot_Started[9] = 0;
    station.Slot_End[9] = 200;
    station.Slot_FadeOut[9] = true;
    station.clear_slot(9);
    EXPECT_EQ(station.Slot_Ready[9], 0);
    EXPECT_EQ(station.Slot_Started[9], 1);
    EXPECT_DOUBLE_EQ(station.Slot_End[9], -1);
    EXPECT_FALSE(station.Slot_FadeOut[9]);
}

}  // namespace
}  // namespace tavora
