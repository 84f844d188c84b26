// The Setup screen's boxes for the dead-air watchdog and loudness show
// tavora.ini and save it; a box without a value keeps the setting and says so.
#include <gtest/gtest.h>

#include <fstream>

#include "core/settings/frm_setup.h"
#include "fake_services.h"
#include "runtime/dates.h"
#include "store/library_files.h"

namespace tavora {
namespace {

TEST(SetupExtensions, TheBoxesShowTavoraIniAndSaveItForTheStationToApply) {
    const double today = DateSerial(2026, 3, 9);
    FakeServices fake(today);
    ASSERT_EQ(create_settings_file(fake.home() / "Setup.mdb", today), "");
    std::ofstream(fake.home() / "tavora.ini") << "Dead Air Hold Seconds=12\nLoudness Normalise=0\n";
    Station station;
    LibraryPool pool;
    frmSetup setup(station, fake.services, pool);
    std::optional<Extensions> applied;
    setup.Extensions_Saved = [&applied](const Extensions& saved) { applied = saved; };

    setup.Form_Load();
    EXPECT_EQ(setup.txtDeadAirHold.Text, "12");
    EXPECT_EQ(setup.txtDeadAirLevel.Text, "-45");
    EXPECT_EQ(setup.chkDeadAir.Value, 1);
    EXPECT_EQ(setup.chkLoudness.Value, 0);
    EXPECT_EQ(setup.txtLoudTarget.Text, "-18");

    ASSERT_TRUE(setup.set("chkLoudness", -1, "1"));
    ASSERT_TRUE(setup.set("txtDeadAirLevel", -1, "-50"));
    ASSERT_TRUE(setup.set("txtDeadAirHold", -1, "soon"));
    ASSERT_TRUE(setup.set("txtDeadAirFolder", -1, "c:\\tavora\\spots"));
    setup.Command1_Click();

    ASSERT_EQ(fake.dialogs.shown().size(), 1u);
    EXPECT_EQ(fake.dialogs.shown()[0].request.text,
              "tavora.ini: \"soon\" is no value for Dead Air Hold Seconds; it stays 12");
    ASSERT_TRUE(applied);
    EXPECT_TRUE(applied->Loudness_Normalise);
    EXPECT_EQ(applied->Dead_Air_Level, -50);
    EXPECT_EQ(applied->Dead_Air_Hold, 12);
    EXPECT_EQ(applied->Dead_Air_Folder, "c:\\tavora\\spots");
    const Extensions saved = read_extensions(fake.home() / "tavora.ini");
    EXPECT_EQ(saved.Dead_Air_Level, -50);
    EXPECT_EQ(saved.Dead_Air_Folder, "c:\\tavora\\spots");
    EXPECT_TRUE(saved.Loudness_Normalise);
}

}  // namespace
}  // namespace tavora
