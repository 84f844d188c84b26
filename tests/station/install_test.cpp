#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <vector>

#include "audio/decoder.h"
#include "audio/format.h"
#include "broadcast/profile.h"
#include "core/settings/session_file.h"
#include "core/station.h"
#include "runtime/dates.h"
#include "station/demo_library.h"
#include "station/install.h"
#include "store/library.h"
#include "store/recordset.h"
#include "test_folder.h"

namespace tavora {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

const double kNow = DateSerial(2026, 11, 23) + 0.4;

Recordset recordings(const fs::path& home, const std::string& source = "Recordings1") {
    return OpenRecordset(Library::open(home / "qx1.mdb", FileKind::Library).library, source);
}

TEST(Install, MakesTheFolderAndNeverOverwritesWhatIsThere) {
    TestFolder folder;
    const auto home = folder.path() / "tavora";
    const InstallReport first = install_station(home, kNow);
    ASSERT_EQ(first.error, "");
    EXPECT_EQ(first.made.size(), 7u + StandardProfiles().size());  // and the recorder's profiles
    EXPECT_THAT(folder.Read(home / "manual" / "tqxops.htm"), HasSubstr("Run Juke Box"));
    EXPECT_THAT(folder.Read(home / "manual" / "legal.txt"), HasSubstr("licence"));
    EXPECT_TRUE(fs::is_directory(home / "web"));
    EXPECT_TRUE(Library::open(home / "Setup.mdb", FileKind::Settings).library);
    EXPECT_EQ(recordings(home).RecordCount(), 0);

    const std::string before = folder.Read(home / "qx1.mdb");
    fs::remove(home / "Setup.mdb");
    folder.Write("tavora/manual/tqxops.htm", "our own help");
    folder.Write("tavora/mp3lanf.asd", "codec = mp3\nbitrate = 96\nfile = c:\\mine.asf\n");
    const InstallReport second = install_station(home, kNow + 1);
    ASSERT_EQ(second.error, "");
    EXPECT_EQ(second.made, std::vector<std::string>{(home / "Setup.mdb").string()});
    EXPECT_EQ(folder.Read(home / "qx1.mdb"), before);
    EXPECT_EQ(folder.Read(home / "manual" / "tqxops.htm"), "our own help");
    for (const auto& [name, profile] : StandardProfiles()) {
        const ProfileRead read = ReadProfile(home / name);
        ASSERT_TRUE(read.profile) << name << ": " << read.error;
        EXPECT_EQ(read.profile->bitrate_kbps, name == "mp3lanf.asd" ? 96 : profile.bitrate_kbps)
            << name;
    }
}

TEST(Install, AFolderThatIsAFileIsAClearFailure) {
    TestFolder folder;
    const auto home = folder.Write("taken");
    EXPECT_THAT(install_station(home, kNow).error, HasSubstr("cannot make the folder"));
    EXPECT_EQ(folder.Read(home), "x");
}

// Generates real media, so the song count is kept small here. The spots and
// the quickest songs are there when the call returns; the rest come while
// the station plays, and a run stopped half way goes on at the next start
// without making anything twice.
TEST(DemoLibrary, MakesTheFirstSongsAtOnceAndTheRestLaterEvenAcrossARestart) {
    TestFolder folder;
    const auto home = folder.path();
    DemoOptions options;
    options.songs = 5;
    options.first = 17 + 2;
    DemoReport report = make_demo_library(home, kNow, options);
    ASSERT_EQ(report.error, "");
    ASSERT_TRUE(report.made);
    EXPECT_EQ(report.rows, 17u + 2);
    ASSERT_NE(report.rest, nullptr);
    report.rest.reset();  // the station stops at once
    // The songs made before the station starts are FLAC (the plan has one):
    // the first air waits for them, and FLAC is the quickest to make after WAV.
    Recordset first_songs = recordings(
        home, "SELECT [Long title] FROM Recordings1 WHERE Source IS NULL ORDER BY RecID");
    for (int n = 0; n < 2; ++n, first_songs.MoveNext())
        EXPECT_EQ(fs::path(first_songs.Fields("Long title").text()).extension(), ".flac");
    const long after_stop = recordings(home).RecordCount();
    EXPECT_GE(after_stop, 19);
    EXPECT_LT(after_stop, 5 + 17);
    for (const auto& entry : fs::directory_iterator(home / "music"))
        EXPECT_NE(entry.path().extension(), ".part") << "no half-made clip";

    DemoReport resumed = make_demo_library(home, kNow, options);
    ASSERT_EQ(resumed.error, "");
    EXPECT_FALSE(resumed.made);
    ASSERT_NE(resumed.rest, nullptr);
    EXPECT_EQ(resumed.rest->wait(), "");
    EXPECT_FALSE(fs::exists(home / "music" / "demo-unfinished.txt"));
    const DemoReport again = make_demo_library(home, kNow, options);
    EXPECT_EQ(again.error, "");
    EXPECT_FALSE(again.made);
    EXPECT_EQ(again.rest, nullptr);

    // Every clip plays for its planned length, and sounds; every row can air.
    Recordset rows = recordings(home);
    EXPECT_EQ(rows.RecordCount(), 5 + 17);
    std::set<std::string> formats;
    std::map<std::string, int> sources;
    for (; !rows.IsEOF(); rows.MoveNext()) {
        const std::string stored = rows.Fields("Long title").text();
        ASSERT_EQ(stored.rfind("c:\\tavora\\music\\", 0), 0u) << stored;
        const auto file = home / "music" / stored.substr(16);
        formats.insert(file.extension().string());
        ++sources[rows.Fields("Source").text()];
        // A Null here would keep the row out of the rotation for good.
        EXPECT_FALSE(rows.Fields("Last Played").is_null());
        EXPECT_LT(rows.Fields("Daily Reset").number(), kNow);
        audio::Decoder decoder;
        ASSERT_EQ(decoder.open(file.string()).status, audio::OpenStatus::Succeeded) << file;
        EXPECT_NEAR(audio::seconds_of_frames(decoder.length()), rows.Fields("End Pos").number(),
                    0.05)
            << file;
        std::vector<float> block(4800 * 2);
        decoder.seek(decoder.length() / 2);
        double energy = 0;
        const std::size_t got = decoder.read(block.data(), 4800);
        for (std::size_t i = 0; i < got * 2; ++i)
            energy += block[i] * block[i];
        EXPECT_GT(std::sqrt(energy / (2.0 * got)), 0.01) << file << " is silent in its middle";
    }
    EXPECT_EQ(formats, (std::set<std::string>{".mp3", ".ogg", ".flac", ".m4a", ".wav"}));
    EXPECT_EQ(sources, (std::map<std::string, int>{
                           {"", 5}, {"Snipit", 6}, {"Top40", 10}, {"Timed Promo", 1}}));

    auto settings = Library::open(home / "Setup.mdb", FileKind::Settings).library;
    EXPECT_EQ(OpenRecordset(settings, "Setup").Fields("Use Schedule").number(), -1);
    Station session;
    ASSERT_TRUE(Read_BP(session, home / "qxbp.ini"));
    EXPECT_EQ(session.Log_Due, 0) << "the demo keeps a play log";
}

}  // namespace
}  // namespace tavora
