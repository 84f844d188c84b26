#include <gtest/gtest.h>

#include "decoded.h"
#include "sim_station.h"

namespace tavora {
namespace {

using SimulatedRecording = SimStation;

// The operator's way through the recorder window, in the simulator: the menu, the MP3
// option, the LAN button, Run; ten minutes later Stop, with the title left empty so
// the temporary file stays. It holds the offline mix of those ten minutes.
TEST_F(SimulatedRecording, TenMinutesOfTheStationBecomeAFileThatPlays) {
    auto_start(false);
    // Just after midnight, before the daily playlist run: only the script starts it.
    const double night = kStart - 14.0 / 24.0 + 2.0 / 1440.0;
    const SimRun run = simulate("11",
                                "00:00:01 click QXMain.B_Cast\n"
                                "00:00:02 click EncRep.Option2\n"
                                "00:00:02 click EncRep.StartLAN\n"
                                "00:00:03 click QXMain.mnu_File_Run\n"
                                "00:10:02 answer Cancel\n"
                                "00:10:02 click EncRep.Stop\n",
                                false, {}, night);
    ASSERT_EQ(run.code, 0) << run.err;
    const auto dialogs = run.lines("DIALOG");
    ASSERT_GE(dialogs.size(), 4u) << run.out;
    EXPECT_NE(dialogs[0].find("Warning! You must start recording prior to running the Tavora "
                              "Players for correct operation"),
              std::string::npos);
    EXPECT_NE(dialogs.back().find("\"Enter Title for this Recording\" -> \"\""), std::string::npos)
        << dialogs.back();
    EXPECT_GE(run.lines("AIR").size(), 2u) << run.out;

    const auto temp = folder_.path() / "qxlan.asf";  // c:\qxlan.asf
    ASSERT_TRUE(std::filesystem::exists(temp)) << run.err;
    const test::Decoded d = test::decode(temp.string());
    EXPECT_EQ(d.codec, "mp3");
    EXPECT_NEAR(d.seconds, 600.0, 1152.0 / 44100 + 1024.0 / 48000);
    EXPECT_GT(d.rms, 0.02) << "the demo songs, not silence";
}

}  // namespace
}  // namespace tavora
