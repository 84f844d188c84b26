#include "core/log/play_log.h"

#include <gtest/gtest.h>

#include "core/settings/net_file.h"
#include "runtime/dates.h"

namespace tavora {
namespace {

TEST(PlayLog, LinesReadAsTheLogHasAlwaysRead) {
    const double at = DateSerial(2026, 3, 2) + TimeSerial(21, 5, 7);
    EXPECT_EQ(complete_line(at, 3, "Song - Artist"), "Complete at:9:05:07 PM- QX3 > Song - Artist");
    EXPECT_EQ(complete_line(at, 7, "Song - Artist"),
              "Complete at:9:05:07 PM- QX 7 > Song - Artist");
    EXPECT_EQ(missing_line(at, "d:\\m\\a.mp3", "A - B"),
              "ERROR FILE NOT FOUND >> 9:05:07 PM  d:\\m\\a.mp3 A - B");
}

TEST(NetFile, MapsTheDriveInRemoteUseOnly) {
    Station station;
    const std::vector<DriveAlias> aliases = {{"E", "F"}, {"G", "f"}, {"H", "K"}};
    station.Run_Mode = 0;
    EXPECT_EQ(Net_File(station, aliases, "F:\\music\\a.mp3"), "F:\\music\\a.mp3");
    station.Run_Mode = 1;
    // Two rows for one letter: the later wins.
    EXPECT_EQ(Net_File(station, aliases, "F:\\music\\a.mp3"), "g:\\music\\a.mp3");
    EXPECT_EQ(Net_File(station, aliases, "d:\\music\\a.mp3"), "d:\\music\\a.mp3");
    EXPECT_EQ(Net_File(station, aliases, "QXPL My List"), "QXPL My List");
    station.Rev_Drive = 1;
    EXPECT_EQ(Net_File(station, aliases, "h:\\x.mp3"), "k:\\x.mp3");
}

}  // namespace
}  // namespace tavora
