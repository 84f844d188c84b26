#include "core/windows/qx_main.h"

#include <gtest/gtest.h>

namespace tavora {
namespace {

TEST(QXMain, MenuPanelsAndGeometryFollowTheWindow) {
    Station station;
    QXMain main(station);
    station.Run_Mode = 1;
    ASSERT_TRUE(main.click("mnu_File"));
    EXPECT_FALSE(main.mnu_File_Run.Enabled);
    EXPECT_EQ(main.Caption, " Tavora Music System REMOTE Access Mode (JukeBox Is Disabled)");
    station.Run_Mode = 0;
    main.click("mnu_File");
    EXPECT_TRUE(main.mnu_File_Run.Enabled);

    // Counter panels count from their text.
    main.Panel(7).Text = "0";
    main.Count(7);
    main.Count(7);
    EXPECT_EQ(main.Panel(7).Text, "2");
    EXPECT_EQ(main.Panel(7).ToolTipText, "Pgm Mgr Selections Not Found");

    // The saved geometry follows only a normal window.
    main.WindowState = 2;
    main.Left = 5;
    main.Form_Resize();
    EXPECT_EQ(station.Wnd_State, 2);
    EXPECT_EQ(station.Wnd_Left, 210);
    main.WindowState = 0;
    main.Form_Resize();
    EXPECT_EQ(station.Wnd_State, 0);
    EXPECT_EQ(station.Wnd_Left, 5);
}

}  // namespace
}  // namespace tavora
