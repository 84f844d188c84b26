// The dead-air watchdog on the real engine: silences in songs are logged,
// skipped and recovered from; a library of silent files is covered by the
// emergency files; silence that a break, a pause or the end of the run
// explains raises nothing.

#include "broken_files.h"
#include "platform/path_map.h"
#include "sim_station.h"

namespace tavora {
namespace {

constexpr double kHold = 8;
constexpr double kTick = 0.3;

using DeadAirWatchSim = SimStation;

TEST_F(DeadAirWatchSim, ALibraryOfSilentFilesIsCoveredByTheEmergencyFiles) {
    const auto silent = home() / "music" / "silent.wav";
    ASSERT_TRUE(ffmpeg("-f lavfi -i anullsrc=r=48000:cl=stereo -t 90", silent));
    query("UPDATE Recordings1 SET [Long title] = ?", {PathMap(home()).ToDos(silent)});
    // A folder that isn't there: the station's snipits stand in, and say so.
    std::ofstream(home() / "tavora.ini") << "Dead Air Fallback Folder=c:\\tavora\\no such folder\n";

    const SimRun run = simulate("3", "", false);
    const auto detected = play_log("DEAD AIR at:");
    ASSERT_EQ(detected.size(), 1u) << run.out;
    const auto covers = play_log("DEAD AIR FALLBACK at:");
    ASSERT_FALSE(covers.empty());
    EXPECT_NE(covers[0].find("Station Snipit"), std::string::npos) << covers[0];
    EXPECT_EQ(play_log("DEAD AIR FALLBACK >> no playable file in c:\\tavora\\no such folder, "
                       "playing the station snipits")
                  .size(),
              1u);
    EXPECT_EQ(play_log("DEAD AIR RECOVERED").size(), 0u);
    // One skip each hold time, never more often: 3 minutes less the first hold.
    const auto skips = play_log("DEAD AIR SKIP at:");
    EXPECT_GE(skips.size(), 2u);
    EXPECT_LE(skips.size(), static_cast<std::size_t>(180 / kHold));
    // The skip brought on another silent song: the emergency files cover the
    // air one look later, within the second.
    EXPECT_LE(seconds_of_clock(covers[0]) - seconds_of_clock(detected[0]), 1) << detected[0] << "\n"
                                                                              << covers[0];
    EXPECT_NE(file("tqxstat.txt").at(0).find(" ** DEAD AIR, emergency files on the air"),
              std::string::npos);
}

// A pause of a minute by the operator, a break from the station manager
// (the set holds until its end), then the operator closes the players.
TEST_F(DeadAirWatchSim, ABreakAPauseAndTheOperatorEndingTheRunRaiseNoAlarm) {
    const SimRun run =
        simulate("40",
                 "00:05:00 answer OK\n"
                 "00:05:00 click QXMain.mnu_File_Pause\n"
                 "00:06:00 click QXMain.mnu_File_Pause\n"
                 "00:10:00 write qxsm.ini \"Exit\",False,\"Exit2\",False,\"Show\",x,y,\"Start\","
                 "#2:12:00 PM#,\"End\",#2:30:00 PM#,z,#11/23/2026#,\"BP\",False,3,\"CD\",False,"
                 "\"Skip\",False,\"Spare\",w,\"Play\",False\n"
                 "00:35:00 answer OK\n"
                 "00:35:00 close frmViewer\n",
                 false);
    EXPECT_EQ(holding(run.lines("DIALOG"), "\"UNLOAD WARNING\"").size(), 1u) << run.out;
    // Nothing aired after the close.
    EXPECT_LT(time_of(run.lines("AIR").back()), "2026-11-23 14:35:00.000") << run.out;
    EXPECT_EQ(play_log("DEAD AIR").size(), 0u) << run.out;
    // All three silences happened: the five minutes after the close, and
    // more than a minute before it.
    EXPECT_GT(run.end("dead_air_s"), 6 * 60) << run.lines("END")[0];
    EXPECT_EQ(file("tqxstat.txt").at(0).find("DEAD AIR"), std::string::npos);
}

// A library gone bad behind the station's back: broken and silent files
// among the songs, hours on the real engine, and no stretch of dead air
// longer than the watchdog's hold time plus one tick. The day of the shipped
// demo is the simulator benchmark's.
TEST_F(DeadAirWatchSim, HoursOfBrokenAndSilentFilesHaveNoDeadAirBeyondTheHold) {
    const BrokenRows broken = break_songs(home(), 1);
    ASSERT_EQ(broken.error, "");
    const SimRun run = simulate("150", "", false);
    EXPECT_GT(run.end("longest_dead_air_s"), kHold - kTick) << run.lines("END")[0];
    EXPECT_LE(run.end("longest_dead_air_s"), kHold + kTick) << run.lines("END")[0];

    // Every broken row came up in the run.
    for (const long long id : broken.rec_ids)
        EXPECT_FALSE(with_recid(run.lines("PICK"), std::to_string(id)).empty()) << id;
    // The silent ones aired, and each was heard as silence and skipped.
    for (const Breakage kind : {Breakage::Silent, Breakage::SilentMiddle}) {
        const long long id = broken.rec_ids[static_cast<std::size_t>(kind)];
        const auto aired = with_recid(run.lines("AIR"), std::to_string(id));
        ASSERT_FALSE(aired.empty()) << broken_files::name_of(kind);
        const std::string named = " > " + title_of(aired[0]);
        EXPECT_EQ(holding(play_log("DEAD AIR at:"), named).size(), aired.size()) << named;
        EXPECT_EQ(holding(play_log("DEAD AIR SKIP at:"), named).size(), aired.size()) << named;
    }
    // Each alarm names the player and the hold, and is skipped and recovered
    // from, in that order: no skip brought on another silence.
    std::string alarms, expected;
    for (const std::string& line : play_log("DEAD AIR")) {
        alarms += line.substr(9, line.find_first_of(": ", 9) - 9) + " ";
        if (line.rfind("DEAD AIR at:", 0) == 0) {
            expected += "at SKIP RECOVERED ";
            EXPECT_NE(line.find("silent for 8 s - QX"), std::string::npos) << line;
        }
    }
    EXPECT_EQ(alarms, expected);
    // The noise file under a music name was refused by its player, and the
    // set went on.
    const auto refused = holding(run.lines("DIALOG"), "No sound in ");
    ASSERT_EQ(refused.size(), 1u) << run.out;
    EXPECT_NE(refused[0].find("garbage 0.mp3"), std::string::npos) << refused[0];
}

}  // namespace
}  // namespace tavora
