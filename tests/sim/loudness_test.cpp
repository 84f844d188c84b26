// Loudness normalisation on the real engine: two songs 12 dB apart air
// level with it on and 12 dB apart with it off, as libebur128 hears the
// offline mix; a file replaced on disk is measured again.
#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>

#include "audio/loudness.h"
#include "catalogue/loudness_book.h"
#include "catalogue/loudness_worker.h"
#include "platform/path_map.h"
#include "sim_station.h"
#include "station/station_app.h"
#include "store/statement.h"

namespace tavora {
namespace {

class LoudnessSim : public SimStation {
  protected:
    void SetUp() override {
        SimStation::SetUp();
        const auto music = home() / "music";
        loud_ = music / "Amber Skyline - Jonah Reyes.mp3";
        quiet_ = music / "quiet copy.wav";
        ASSERT_TRUE(ffmpeg("-i \"" + loud_.string() + "\" -af volume=-12dB", quiet_));
        // Every song row plays one of the two: by its RecID's parity.
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement rows = library->connection().prepare(
            "UPDATE Recordings1 SET [Long title] = CASE RecID % 2 WHEN 1 THEN ? ELSE ? END, "
            "[End Pos] = (SELECT [End Pos] FROM Recordings1 WHERE [Long title] = ? LIMIT 1) "
            "WHERE Source IS NULL");
        const PathMap paths(home());
        rows.bind_text(1, paths.ToDos(loud_));
        rows.bind_text(2, paths.ToDos(quiet_));
        rows.bind_text(3, paths.ToDos(loud_));
        ASSERT_EQ(rows.step(), Statement::Step::Done) << rows.error();
    }

    static bool ffmpeg(const std::string& args, const std::filesystem::path& to) {
        return std::system(("ffmpeg -nostdin -hide_banner -loglevel error -y " + args + " \"" +
                            to.string() + "\"")
                               .c_str()) == 0;
    }

    LibraryAnalysis analyse() {
        LoudnessBook book(home() / "qx1.mdb");
        EXPECT_TRUE(book.ok());
        return measure_library(book, measure_file, native_files(PathMap(home())));
    }

    // The mean integrated loudness of each song's air in the mix, away from
    // its mixes, keyed by the RecID's parity (1: the loud file).
    std::map<int, double> aired_levels(const SimRun& run, const std::filesystem::path& mix) {
        const std::regex air(R"(^AIR \S+ (\d+):(\d+):([\d.]+) slot=\d+ player=\d+ recid=(\d+) )");
        std::vector<std::pair<double, long>> starts;
        for (const auto& line : run.lines("AIR")) {
            std::smatch m;
            if (!std::regex_search(line, m, air)) continue;
            const double at =
                (std::stod(m[1]) - 14) * 3600 + std::stod(m[2]) * 60 + std::stod(m[3]);
            starts.emplace_back(at, std::stol(m[4]));
        }
        std::map<int, std::pair<double, int>> sums;
        for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
            const double from = starts[i].first + 15;
            const double to = starts[i + 1].first - 15;
            if (to - from < 30 || !is_song(starts[i].second)) continue;
            std::string error;
            const auto level = audio::measure_loudness(mix.string(), from, to, error);
            EXPECT_TRUE(level) << error;
            if (!level) continue;
            auto& [sum, count] = sums[static_cast<int>(starts[i].second % 2)];
            sum += level->integrated_lufs;
            ++count;
        }
        std::map<int, double> means;
        for (const auto& [parity, sum] : sums)
            means[parity] = sum.first / sum.second;
        return means;
    }

    bool is_song(long recid) {
        auto library = Library::open(home() / "qx1.mdb", FileKind::Library).library;
        Statement row =
            library->connection().prepare("SELECT Source IS NULL FROM Recordings1 WHERE RecID = ?");
        row.bind_int64(1, recid);
        return row.step() == Statement::Step::Row && row.column_int64(0) == 1;
    }

    std::filesystem::path loud_, quiet_;
};

TEST_F(LoudnessSim, SongsTwelveDecibelsApartAirLevelWithNormalisationAndApartWithout) {
    const LibraryAnalysis first = analyse();
    EXPECT_GT(first.measured, 40u);
    EXPECT_EQ(first.missing, 0u);
    LoudnessBook book(home() / "qx1.mdb");
    const auto loud = book.find(loud_.string());
    const auto quiet = book.find(quiet_.string());
    ASSERT_TRUE(loud && quiet);
    EXPECT_NEAR(loud->integrated_lufs - quiet->integrated_lufs, 12, 0.2);

    const auto on_mix = folder_.path() / "on.wav";
    const SimRun on = simulate("40", "", false, on_mix);
    ASSERT_EQ(on.code, 0) << on.err;
    const auto level = aired_levels(on, on_mix);
    ASSERT_EQ(level.size(), 2u) << on.out;
    EXPECT_NEAR(level.at(1), level.at(0), 1.0);
    EXPECT_NEAR(level.at(1), -18, 1.0);

    std::ofstream(home() / "tavora.ini") << "Loudness Normalise=0\n";
    const auto off_mix = folder_.path() / "off.wav";
    const SimRun off = simulate("40", "", false, off_mix);
    ASSERT_EQ(off.code, 0) << off.err;
    const auto as_recorded = aired_levels(off, off_mix);
    ASSERT_EQ(as_recorded.size(), 2u) << off.out;
    EXPECT_NEAR(as_recorded.at(1) - as_recorded.at(0), 12, 1.0);
}

TEST_F(LoudnessSim, AFileReplacedOnDiskIsMeasuredAgainAndOnlyIt) {
    analyse();
    const LibraryAnalysis unchanged = analyse();
    EXPECT_EQ(unchanged.measured, 0u);
    LoudnessBook book(home() / "qx1.mdb");
    const double before = book.find(quiet_.string())->integrated_lufs;

    const auto louder = folder_.path() / "louder.wav";
    ASSERT_TRUE(ffmpeg("-i \"" + loud_.string() + "\" -af volume=-6dB", louder));
    std::filesystem::rename(louder, quiet_);
    EXPECT_FALSE(book.find(quiet_.string())) << "a measurement of the old file must not serve";
    const LibraryAnalysis again = analyse();
    EXPECT_GT(again.measured, 0u);
    EXPECT_EQ(again.measured + again.current, unchanged.current);
    ASSERT_TRUE(book.find(quiet_.string()));
    EXPECT_NEAR(book.find(quiet_.string())->integrated_lufs - before, 6, 0.2);
}

TEST_F(LoudnessSim, ARecordAddedIsMeasuredInTheBackgroundAndABrokenFileIsTriedOnce) {
    analyse();
    const auto broken = home() / "music" / "broken.mp3";
    std::ofstream(broken) << "not audio at all";
    LoudnessWorker worker(home() / "qx1.mdb", measure_file, native_files(PathMap(home())));
    const auto added = home() / "music" / "added.wav";
    ASSERT_TRUE(ffmpeg("-f lavfi -i sine=frequency=440:duration=20", added));
    worker.add(9001, added.string());
    worker.add(9002, broken.string());
    worker.wait_idle();
    LoudnessBook book(home() / "qx1.mdb");
    ASSERT_TRUE(book.find(added.string()));
    EXPECT_FALSE(book.find(broken.string()));
    EXPECT_TRUE(book.tried(9002, broken.string(), *stamp_of(broken)));
}

}  // namespace
}  // namespace tavora
