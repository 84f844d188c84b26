// The dead-air watchdog on the real engine: a silence in a song is logged,
// skipped and recovered from; a library of silent files is covered by the
// emergency files; silence that a break, a pause or the end of the run
// explains raises nothing.
#include <cstdlib>
#include <fstream>
#include <regex>

#include "platform/path_map.h"
#include "sim_station.h"
#include "store/statement.h"

namespace tavora {
namespace {

class DeadAirWatchSim : public SimStation {
  protected:
    std::vector<std::string> play_log() const {
        std::vector<std::string> out;
        std::ifstream in(home() / "qxl1123.log");
        for (std::string line; std::getline(in, line);)
            out.push_back(line.substr(0, line.find_last_not_of('\r') + 1));
        return out;
    }
    std::vector<std::string> log_lines(const std::string& start) const {
        std::vector<std::string> found;
        for (const auto& line : play_log())
            if (line.rfind(start, 0) == 0) found.push_back(line);
        return found;
    }
    static double dead_air(const SimRun& run) {
        std::smatch m;
        const std::string end = run.lines("END").at(0);
        return std::regex_search(end, m, std::regex(" dead_air_s=([0-9.]+)")) ? std::stod(m[1])
                                                                              : -1;
    }
    void sql(const std::string& statement, const std::string& text = {}, long id = -1) {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement run = library->connection().prepare(statement);
        int n = 0;
        if (!text.empty()) run.bind_text(++n, text);
        if (id >= 0) run.bind_int64(++n, id);
        ASSERT_EQ(run.step(), Statement::Step::Done) << run.error();
    }
    std::string file_of(long recid) {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement row =
            library->connection().prepare("SELECT [Long title] FROM Recordings1 WHERE RecID = ?");
        row.bind_int64(1, recid);
        EXPECT_EQ(row.step(), Statement::Step::Row);
        return PathMap(home()).ToNative(row.column_text(0)).path;
    }
    // `from` made silent between `start` and `end` seconds, as a WAV file.
    static bool silence(const std::string& from, const std::filesystem::path& to, double start,
                        double end) {
        const std::string command = "ffmpeg -nostdin -hide_banner -loglevel error -y -i \"" + from +
                                    "\" -af \"volume=0:enable='between(t," + std::to_string(start) +
                                    "," + std::to_string(end) + ")'\" \"" + to.string() + "\"";
        return std::system(command.c_str()) == 0;
    }
    // The "h:mm:ss AM" after `start` in a play log line, in seconds.
    static int seconds_into_day(const std::string& line, const std::string& start) {
        std::smatch m;
        const std::string rest = line.substr(start.size());
        if (!std::regex_search(rest, m, std::regex("^(\\d+):(\\d\\d):(\\d\\d) (AM|PM)"))) return -1;
        return (std::stoi(m[1]) % 12 + (m[4] == "PM" ? 12 : 0)) * 3600 + std::stoi(m[2]) * 60 +
               std::stoi(m[3]);
    }
    static double length_of(const std::string& file) {
        const std::string command =
            "ffprobe -v error -show_entries format=duration -of csv=p=0 \"" + file + "\"";
        std::FILE* pipe = popen(command.c_str(), "r");
        char text[64] = {};
        const bool read = std::fgets(text, sizeof text, pipe) != nullptr;
        pclose(pipe);
        return read ? std::atof(text) : 0;
    }
};

constexpr double kHold = 8;
constexpr double kTick = 0.3;

TEST_F(DeadAirWatchSim, ASilenceInTheThirdSongIsLoggedSkippedAndRecoveredWithinTheHold) {
    // The first set is picked at the run's start, the same on every run that
    // starts from the same library.
    const auto before = folder_.path() / "before";
    std::filesystem::copy(home(), before, std::filesystem::copy_options::recursive);
    const SimRun first = simulate("1", "", false);
    std::filesystem::remove_all(home());
    std::filesystem::rename(before, home());
    std::smatch m;
    long third = 0;
    for (const auto& pick : first.lines("PICK"))
        if (std::regex_search(pick, m, std::regex(" slot=3 recid=(\\d+)"))) third = std::stol(m[1]);
    ASSERT_NE(third, 0) << first.out;
    const std::string song = file_of(third);
    const double length = length_of(song);
    ASSERT_GT(length, 100);
    const auto quiet = home() / "music" / "quiet middle.wav";
    ASSERT_TRUE(silence(song, quiet, length / 2 - 20, length / 2 + 20));
    sql("UPDATE Recordings1 SET [Long title] = ? WHERE RecID = ?", PathMap(home()).ToDos(quiet),
        third);

    const SimRun run = simulate("25", "", false);
    ASSERT_EQ(run.code, 0) << run.err;
    const auto detected = log_lines("DEAD AIR at:");
    ASSERT_EQ(detected.size(), 1u) << run.out;
    EXPECT_NE(detected[0].find("silent for 8 s - QX3 > "), std::string::npos) << detected[0];
    EXPECT_EQ(log_lines("DEAD AIR SKIP at:").size(), 1u);
    EXPECT_EQ(log_lines("DEAD AIR RECOVERED at:").size(), 1u);
    EXPECT_EQ(log_lines("DEAD AIR FALLBACK").size(), 0u);
    // The log's order: the silence, the skip, the recovery, each once.
    const auto log = play_log();
    const auto at = [&log](const std::string& start) {
        return std::find_if(log.begin(), log.end(),
                            [&](const std::string& l) { return l.rfind(start, 0) == 0; }) -
               log.begin();
    };
    EXPECT_LT(at("DEAD AIR at:"), at("DEAD AIR SKIP at:"));
    EXPECT_LT(at("DEAD AIR SKIP at:"), at("DEAD AIR RECOVERED at:"));
    const double dead = dead_air(run);
    EXPECT_GE(dead, kHold) << run.lines("END")[0];
    EXPECT_LE(dead, kHold + kTick) << run.lines("END")[0];
}

TEST_F(DeadAirWatchSim, ALibraryOfSilentFilesIsCoveredByTheEmergencyFiles) {
    const auto silent = home() / "music" / "silent.wav";
    ASSERT_EQ(std::system(("ffmpeg -nostdin -hide_banner -loglevel error -y -f lavfi -i "
                           "anullsrc=r=48000:cl=stereo -t 90 \"" +
                           silent.string() + "\"")
                              .c_str()),
              0);
    sql("UPDATE Recordings1 SET [Long title] = ?", PathMap(home()).ToDos(silent));
    // A folder that isn't there: the station's snipits stand in, and say so.
    std::ofstream(home() / "tavora.ini") << "Dead Air Fallback Folder=c:\\tavora\\no such folder\n";

    const SimRun run = simulate("3", "", false);
    ASSERT_EQ(run.code, 0) << run.err;
    const auto detected = log_lines("DEAD AIR at:");
    ASSERT_EQ(detected.size(), 1u) << run.out;
    const auto covers = log_lines("DEAD AIR FALLBACK at:");
    ASSERT_FALSE(covers.empty());
    EXPECT_NE(covers[0].find("Station Snipit"), std::string::npos) << covers[0];
    EXPECT_EQ(log_lines("DEAD AIR FALLBACK >> no playable file in c:\\tavora\\no such folder, "
                        "playing the station snipits")
                  .size(),
              1u);
    EXPECT_EQ(log_lines("DEAD AIR RECOVERED").size(), 0u);
    // One skip each hold time, never more often: 3 minutes less the first hold.
    const auto skips = log_lines("DEAD AIR SKIP at:");
    EXPECT_GE(skips.size(), 2u);
    EXPECT_LE(skips.size(), static_cast<std::size_t>(180 / kHold));
    // The skip brought on another silent song: the emergency files cover the
    // air one look later, within the second.
    EXPECT_LE(seconds_into_day(covers[0], "DEAD AIR FALLBACK at:") -
                  seconds_into_day(detected[0], "DEAD AIR at:"),
              1)
        << detected[0] << "\n"
        << covers[0];
    std::ifstream status(home() / "tqxstat.txt");
    std::string first_line;
    std::getline(status, first_line);
    EXPECT_NE(first_line.find(" ** DEAD AIR, emergency files on the air"), std::string::npos)
        << first_line;
}

TEST_F(DeadAirWatchSim, ABreakAndAPauseRaiseNoAlarm) {
    const SimRun run =
        simulate("40",
                 // A pause of a minute by the operator.
                 "00:05:00 answer OK\n"
                 "00:05:00 click QXMain.mnu_File_Pause\n"
                 "00:06:00 click QXMain.mnu_File_Pause\n"
                 // A break from the station manager: the set holds until its end.
                 "00:10:00 write qxsm.ini \"Exit\",False,\"Exit2\",False,\"Show\",x,y,\"Start\","
                 "#2:12:00 PM#,\"End\",#2:30:00 PM#,z,#11/23/2026#,\"BP\",False,3,\"CD\",False,"
                 "\"Skip\",False,\"Spare\",w,\"Play\",False\n",
                 false);
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(log_lines("DEAD AIR").size(), 0u) << run.out;
    // Both silences happened: more than a minute of dead air in all.
    EXPECT_GT(dead_air(run), 60) << run.lines("END")[0];
}

TEST_F(DeadAirWatchSim, TheOperatorEndingTheRunRaisesNoAlarm) {
    const SimRun run = simulate("15",
                                "00:05:00 answer OK\n"
                                "00:05:00 close frmViewer\n",
                                false);
    ASSERT_EQ(run.code, 0) << run.err;
    const auto asked = run.lines("DIALOG");
    ASSERT_EQ(asked.size(), 1u) << run.out;
    EXPECT_NE(asked[0].find("\"UNLOAD WARNING\""), std::string::npos) << asked[0];
    // Nothing aired after the close.
    EXPECT_LT(run.lines("AIR").back().substr(4, 23), "2026-11-23 14:05:00.000") << run.out;
    EXPECT_EQ(log_lines("DEAD AIR").size(), 0u) << run.out;
    // Ten minutes of silence followed the close, and nobody was alarmed.
    EXPECT_GT(dead_air(run), 9 * 60) << run.lines("END")[0];
    std::ifstream status(home() / "tqxstat.txt");
    std::string first_line;
    std::getline(status, first_line);
    EXPECT_EQ(first_line.find("DEAD AIR"), std::string::npos) << first_line;
}

}  // namespace
}  // namespace tavora
