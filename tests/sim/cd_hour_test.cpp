// An hour of the demo station with a disc image in the CD drive: the disc
// is catalogued, cued, takes the air at a set's end and gives it back.
#include <cstdio>
#include <iterator>

#include "disc_images.h"
#include "sim_station.h"

namespace tavora {
namespace {

// 01:20:00, 01:00:00, 01:30:00 and 01:10:00 at 75 frames a second: a disc of
// 05:00:00 whose key is (5 + 0 + 0) * 4 + (1 + 20 + 0) = 41.
const std::vector<long> kFrames{80 * 75, 60 * 75, 90 * 75, 70 * 75};

// The view opens, the new disc is catalogued with its defaults but tracks 2
// and 4 switched off, and the stop button cues the disc.
constexpr const char* kCue =
    "00:00:05 click frmViewer.CDButt\n"
    "00:00:07 set Form1.DBGrid1 2  Track 2 - CD41  On\n"
    "00:00:07 set Form1.TrackOn 0\n"
    "00:00:07 set Form1.DBGrid1 4  Track 4 - CD41  On\n"
    "00:00:07 set Form1.TrackOn 0\n"
    "00:00:08 click Form1.stopbtn\n";

// The CD's sound goes through the engine: the mix itself is measured.
class CdHour : public SimStation {
  protected:
    SimRun hour(const std::string& script, int minutes) {
        cd_image_ = folder_.path() / "disc";
        make_disc(cd_image_, kFrames);
        auto_start(true);
        return simulate(std::to_string(minutes), script, false);
    }
};

// The track a CD line names, "Track 3 - CD41...", or 0.
int track_of(const std::string& line) {
    std::smatch m;
    return std::regex_search(line, m, std::regex(R"(Track (\d+) - CD41\b)")) ? std::stoi(m[1]) : 0;
}

// The first line of the CD on the air.
auto cd_on_air(const std::vector<std::string>& air) {
    return std::find_if(air.begin(), air.end(), [](const std::string& line) {
        return line.find(" player=CD ") != std::string::npos;
    });
}

// A disc taken out on the air gives the air back to the bank at once.
TEST_F(CdHour, TheCdTakesTheAirAtSetEndsWithItsWantedTracksInTurnUntilTakenOut) {
    const SimRun run = hour(kCue, 60);
    EXPECT_EQ(run.end("dead_air_s"), 0) << run.lines("END")[0];
    EXPECT_EQ(run.lines("DIALOG").size(), 3u) << run.out;

    // Each time: the set's sixth song, the CD with the track cued for it,
    // and the next set's first song 9 seconds before the track ends.
    const std::vector<std::string> air = run.lines("AIR");
    std::vector<int> aired;
    for (std::size_t i = 1; i + 1 < air.size(); ++i) {
        if (field(air[i], "slot") != "15" || field(air[i], "player") != "CD") continue;
        const int track = track_of(air[i]);
        aired.push_back(track);
        EXPECT_NE(air[i - 1].find(" slot=6 player=6 "), std::string::npos) << air[i - 1];
        EXPECT_NE(field(air[i], "recid"), "0") << air[i];
        EXPECT_NE(air[i + 1].find(" slot=1 player=1 "), std::string::npos) << air[i + 1];
        if (track >= 1 && track <= 4) {
            EXPECT_NEAR(seconds_of(air[i + 1]) - seconds_of(air[i]), kFrames[track - 1] / 75.0 - 9,
                        1.5)
                << air[i + 1];
        }
    }
    // The wanted tracks in turn, the switched-off ones never, from the first
    // set's end on.
    EXPECT_EQ(aired, (std::vector<int>{1, 3, 1})) << run.out;

    // The play log: the sixth song handing over, the track the drive played,
    // the bank again; the same tracks as the event lines.
    std::ifstream in(home() / "qxl1123.log", std::ios::binary);
    const std::string log(std::istreambuf_iterator<char>(in), {});
    const std::regex turn(
        R"(- QX 6 > [^\r\n]*\r\n(?:[^\r\n]*- QX6 > [^\r\n]*\r\n)?Complete at:[^\r\n]*- CD > (Track \d+ - CD41) - Tavora\r\nComplete at:[^\r\n]*- QX1 > )");
    std::vector<int> logged;
    for (auto it = std::sregex_iterator(log.begin(), log.end(), turn); it != std::sregex_iterator();
         ++it)
        logged.push_back(track_of((*it)[1]));
    EXPECT_EQ(logged, aired) << log;

    // Again, with the disc taken out 20 seconds into the CD.
    restart();
    const auto first = cd_on_air(air);
    ASSERT_NE(first, air.end()) << run.out;
    const int eject = static_cast<int>(seconds_of(*first)) - 14 * 3600 + 20;
    char at[16];
    std::snprintf(at, sizeof at, "%02d:%02d:%02d", eject / 3600, eject / 60 % 60, eject % 60);
    const SimRun ejected = hour(kCue + std::string(at) + " cd eject\n", eject / 60 + 2);
    ASSERT_EQ(ejected.lines("CD").size(), 1u);
    const auto after = ejected.lines("AIR");
    const auto taken = cd_on_air(after);
    ASSERT_TRUE(taken != after.end() && taken + 1 != after.end()) << ejected.out;
    EXPECT_NE((taken + 1)->find(" slot=1 player=1 "), std::string::npos) << *(taken + 1);
    // Within the CD player's next look and the tick after it.
    EXPECT_NEAR(seconds_of(*(taken + 1)) - seconds_of(*taken), 20, 1.5) << ejected.out;
}

}  // namespace
}  // namespace tavora
