// An hour of the demo station with a disc image in the CD drive: the disc
// is catalogued, cued, takes the air at a set's end and gives it back.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <vector>

#include "disc_images.h"
#include "sim_station.h"

namespace tavora {
namespace {

class CdHour : public SimStation {
  protected:
    SimRun hour(const std::string& script, bool probe = true, int minutes = 60) {
        auto_start(true);
        cd_image_ = disc();
        return simulate(std::to_string(minutes), script, probe);
    }
    std::filesystem::path disc() const { return folder_.path() / "disc"; }
    std::string play_log() const {
        std::ifstream in(home() /
                             "qxl11"
                             "23.log",
                         std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
};

// Seconds of an event line's time.
double seconds_of(const std::string& line) {
    std::smatch m;
    const std::regex time(R"(^\S+ \S+ (\d\d):(\d\d):(\d\d\.\d+))");
    if (!std::regex_search(line, m, time)) return -1;
    return std::stod(m[1]) * 3600 + std::stod(m[2]) * 60 + std::stod(m[3]);
}

// The track a CD line names, "Track 3 - CD41...", or 0.
int track_of(const std::string& line) {
    std::smatch m;
    const std::regex track(R"(Track (\d+) - CD41\b)");
    return std::regex_search(line, m, track) ? std::stoi(m[1]) : 0;
}

TEST_F(CdHour, TheCdTakesTheAirAtSetEndsWithItsWantedTracksInTurn) {
    // 01:20:00, 01:00:00, 01:30:00 and 01:10:00: a disc of 05:00:00 whose key
    // is (5 + 0 + 0) * 4 + (1 + 20 + 0) = 41.
    const std::vector<double> seconds{80, 60, 90, 70};
    make_disc(disc(), {80 * 75, 60 * 75, 90 * 75, 70 * 75});
    // The view opens, the new disc is catalogued with its defaults, tracks 2
    // and 4 are switched off, and the stop button cues the disc.
    const SimRun run = hour(
        "00:00:05 click frmViewer.CDButt\n"
        "00:00:07 set Form1.DBGrid1 2  Track 2 - CD41  On\n"
        "00:00:07 set Form1.TrackOn 0\n"
        "00:00:07 set Form1.DBGrid1 4  Track 4 - CD41  On\n"
        "00:00:07 set Form1.TrackOn 0\n"
        "00:00:08 click Form1.stopbtn\n");
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.end_count("dead_air_s"), 0) << run.lines("END")[0];
    EXPECT_TRUE(run.lines("DIALOG").size() == 3) << run.out;

    // Each time: the set's sixth song, the CD with the track cued for it,
    // and the next set's first song 9 seconds before the track ends.
    const std::vector<std::string> air = run.lines("AIR");
    std::vector<int> aired;
    for (std::size_t i = 1; i + 1 < air.size(); ++i) {
        if (air[i].find(" slot=15 player=CD ") == std::string::npos) continue;
        const int track = track_of(air[i]);
        aired.push_back(track);
        EXPECT_NE(air[i - 1].find(" slot=6 player=6 "), std::string::npos) << air[i - 1];
        EXPECT_EQ(air[i].find(" recid=0 "), std::string::npos) << air[i];
        EXPECT_NE(air[i + 1].find(" slot=1 player=1 "), std::string::npos) << air[i + 1];
        if (track >= 1 && track <= 4) {
            EXPECT_NEAR(seconds_of(air[i + 1]) - seconds_of(air[i]), seconds[track - 1] - 9, 1.5)
                << air[i + 1];
        }
    }
    // The wanted tracks in turn, the switched-off ones never, from the first
    // set's end on.
    EXPECT_EQ(aired, (std::vector<int>{1, 3, 1})) << run.out;

    // The play log: the sixth song handing over, the track the drive played,
    // the bank again; the same tracks as the event lines.
    const std::string log = play_log();
    const std::regex turn(
        R"(- QX 6 > [^\r\n]*\r\n(?:[^\r\n]*- QX6 > [^\r\n]*\r\n)?Complete at:[^\r\n]*- CD > (Track \d+ - CD41) - Tavora\r\nComplete at:[^\r\n]*- QX1 > )");
    std::vector<int> logged;
    for (auto it = std::sregex_iterator(log.begin(), log.end(), turn); it != std::sregex_iterator();
         ++it)
        logged.push_back(track_of((*it)[1]));
    EXPECT_EQ(logged, aired) << log;
}

TEST_F(CdHour, ADiscTakenOutOnTheAirGivesTheAirBackToTheBankAtOnce) {
    make_disc(disc(), {300 * 75, 300 * 75});
    const SimRun first = hour("00:00:05 click frmViewer.CDButt\n00:00:08 click Form1.stopbtn\n");
    ASSERT_EQ(first.code, 0) << first.err;
    const auto cd = [](const SimRun& run) {
        for (const auto& line : run.lines("AIR"))
            if (line.find(" player=CD ") != std::string::npos) return seconds_of(line);
        return -1.0;
    };
    const double on_air = cd(first) - seconds_of("AIR 2026-11-23 14:00:00.000");
    ASSERT_GT(on_air, 0) << first.out;

    // The same hour again, with the disc taken out 20 seconds into the CD.
    std::filesystem::remove_all(home());
    SetUp();
    char at[16];
    const int eject = static_cast<int>(on_air) + 20;
    std::snprintf(at, sizeof at, "%02d:%02d:%02d", eject / 3600, eject / 60 % 60, eject % 60);
    const SimRun run = hour("00:00:05 click frmViewer.CDButt\n00:00:08 click Form1.stopbtn\n" +
                            std::string(at) + " cd eject\n");
    ASSERT_EQ(run.code, 0) << run.err;
    ASSERT_EQ(run.lines("CD").size(), 1u);
    const auto air = run.lines("AIR");
    const auto taken = std::find_if(air.begin(), air.end(), [](const std::string& line) {
        return line.find(" player=CD ") != std::string::npos;
    });
    ASSERT_NE(taken, air.end());
    ASSERT_NE(taken + 1, air.end());
    EXPECT_NE((taken + 1)->find(" slot=1 player=1 "), std::string::npos) << *(taken + 1);
    // Within the CD player's next look and the tick after it.
    EXPECT_NEAR(seconds_of(*(taken + 1)) - seconds_of(*taken), 20, 1.5) << run.out;
}

// The CD's sound goes through the engine: the mix itself is measured, and
// it never falls silent while the CD has the air.
TEST_F(CdHour, TheCdIsMixedByTheEngine) {
    make_disc(disc(), {80 * 75, 60 * 75});
    const SimRun run =
        hour("00:00:05 click frmViewer.CDButt\n00:00:08 click Form1.stopbtn\n", false, 20);
    ASSERT_EQ(run.code, 0) << run.err;
    int cd = 0;
    for (const auto& line : run.lines("AIR"))
        cd += line.find(" player=CD ") != std::string::npos;
    EXPECT_GE(cd, 1) << run.out;
    EXPECT_EQ(run.end_count("dead_air_s"), 0) << run.lines("END")[0];
}

}  // namespace
}  // namespace tavora
