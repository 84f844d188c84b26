// Loudness normalisation on the real engine: two songs 12 dB apart air
// level with it on and 12 dB apart with it off, as libebur128 hears the
// offline mix; a file replaced on disk is measured again.
#include <map>

#include "audio/loudness.h"
#include "catalogue/loudness_book.h"
#include "catalogue/loudness_worker.h"
#include "platform/path_map.h"
#include "sim_station.h"
#include "station/station_app.h"

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
        const PathMap paths(home());
        query(
            "UPDATE Recordings1 SET [Long title] = CASE RecID % 2 WHEN 1 THEN ?1 ELSE ?2 END, "
            "[End Pos] = (SELECT [End Pos] FROM Recordings1 WHERE [Long title] = ?1 LIMIT 1) "
            "WHERE Source IS NULL",
            {paths.ToDos(loud_), paths.ToDos(quiet_)});
    }

    LibraryAnalysis analyse() {
        LoudnessBook book(home() / "qx1.mdb");
        EXPECT_TRUE(book.ok());
        return measure_library(book, measure_file, native_files(PathMap(home())));
    }

    // The mean integrated loudness of each song's air in the mix, away from
    // its mixes, keyed by the RecID's parity (1: the loud file).
    std::map<int, double> aired_levels(const SimRun& run, const std::filesystem::path& mix) {
        const auto songs = query("SELECT RecID FROM Recordings1 WHERE Source IS NULL");
        const auto air = run.lines("AIR");
        std::map<int, std::pair<double, int>> sums;
        for (std::size_t i = 0; i + 1 < air.size(); ++i) {
            const double from = seconds_of(air[i]) - 14 * 3600 + 15;
            const double to = seconds_of(air[i + 1]) - 14 * 3600 - 15;
            const std::string recid = field(air[i], "recid");
            if (to - from < 30 || std::count(songs.begin(), songs.end(), recid) == 0) continue;
            std::string error;
            const auto level = audio::measure_loudness(mix.string(), from, to, error);
            EXPECT_TRUE(level) << error;
            if (!level) continue;
            auto& [sum, count] = sums[std::stoi(recid) % 2];
            sum += level->integrated_lufs;
            ++count;
        }
        std::map<int, double> means;
        for (const auto& [parity, sum] : sums)
            means[parity] = sum.first / sum.second;
        return means;
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

    for (const bool normalise : {true, false}) {
        if (!normalise) std::ofstream(home() / "tavora.ini") << "Loudness Normalise=0\n";
        const auto mix = folder_.path() / (normalise ? "on.wav" : "off.wav");
        const SimRun run = simulate("40", "", false, mix);
        const auto level = aired_levels(run, mix);
        ASSERT_EQ(level.size(), 2u) << run.out;
        EXPECT_NEAR(level.at(1) - level.at(0), normalise ? 0 : 12, 1.0) << normalise;
        if (normalise) {
            EXPECT_NEAR(level.at(1), -18, 1.0);
        }
    }
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
