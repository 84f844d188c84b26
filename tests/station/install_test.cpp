#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
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

const double kNow = DateSerial(2026, 11, 23) + 0.4;

std::string contents(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(Install, MakesTheFolderAndNeverOverwritesWhatIsThere) {
    TestFolder folder;
    const auto home = folder.path() / "tavora";
    const InstallReport first = install_station(home, kNow);
    ASSERT_EQ(first.error, "");
    EXPECT_EQ(first.made.size(), 7u + StandardProfiles().size());  // and the recorder's profiles
    EXPECT_NE(contents(home / "manual" / "tqxops.htm").find("Run Juke Box"), std::string::npos);
    EXPECT_NE(contents(home / "manual" / "legal.txt").find("licence"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_directory(home / "web"));
    EXPECT_TRUE(std::filesystem::is_directory(home / "manual"));
    EXPECT_TRUE(Library::open(home / "Setup.mdb", FileKind::Settings).library);
    auto library = Library::open(home / "qx1.mdb", FileKind::Library).library;
    ASSERT_TRUE(library);
    EXPECT_EQ(OpenRecordset(library, "Recordings1").RecordCount(), 0);
    library.reset();

    const std::string before = contents(home / "qx1.mdb");
    std::filesystem::remove(home / "Setup.mdb");
    { std::ofstream(home / "manual" / "tqxops.htm") << "our own help"; }
    const InstallReport second = install_station(home, kNow + 1);
    ASSERT_EQ(second.error, "");
    ASSERT_EQ(second.made.size(), 1u);
    EXPECT_EQ(second.made[0], (home / "Setup.mdb").string());
    EXPECT_EQ(contents(home / "qx1.mdb"), before);
    EXPECT_EQ(contents(home / "manual" / "tqxops.htm"), "our own help");
}

TEST(Install, AFolderThatIsAFileIsAClearFailure) {
    TestFolder folder;
    const auto home = folder.Write("taken");
    const InstallReport report = install_station(home, kNow);
    EXPECT_NE(report.error.find("cannot make the folder"), std::string::npos) << report.error;
    EXPECT_EQ(contents(home), "x");
}

// Generates real media, so the song count is kept small here.
TEST(DemoLibrary, FillsAnEmptyLibraryOnceWithPlayableRows) {
    TestFolder folder;
    const auto home = folder.path();
    DemoOptions options;
    options.songs = 3;
    const DemoReport report = make_demo_library(home, kNow, options);
    ASSERT_EQ(report.error, "");
    ASSERT_TRUE(report.made);

    auto library = Library::open(home / "qx1.mdb", FileKind::Library).library;
    ASSERT_TRUE(library);
    Recordset rows = OpenRecordset(library, "Recordings1");
    ASSERT_EQ(rows.RecordCount(), static_cast<long>(report.rows));
    int songs = 0, leads = 0, promos = 0;
    for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext()) {
        const std::string stored = rows.Fields("Long title").text();
        ASSERT_EQ(stored.rfind("c:\\tavora\\music\\", 0), 0u) << stored;
        const auto native = home / "music" / stored.substr(16);
        EXPECT_GT(std::filesystem::file_size(native), 1000u) << native;
        // A Null here would keep the row out of the rotation for good.
        EXPECT_FALSE(rows.Fields("Last Played").is_null());
        EXPECT_LT(rows.Fields("Daily Reset").number(), kNow);
        const Value source = rows.Fields("Source");
        if (source.is_null())
            ++songs;
        else if (source.text() == "Top40")
            ++leads;
        else if (source.text() == "Timed Promo")
            ++promos;
    }
    EXPECT_EQ(songs, 3);
    EXPECT_EQ(leads, 10);
    EXPECT_EQ(promos, 1);

    auto settings = Library::open(home / "Setup.mdb", FileKind::Settings).library;
    Recordset setup = OpenRecordset(settings, "Setup");
    EXPECT_EQ(setup.Fields("Use Schedule").number(), -1);
    Station session;
    ASSERT_TRUE(Read_BP(session, home / "qxbp.ini"));
    EXPECT_EQ(session.Log_Due, 0) << "the demo keeps a play log";

    const DemoReport again = make_demo_library(home, kNow, options);
    EXPECT_EQ(again.error, "");
    EXPECT_FALSE(again.made);
}

long rows_in(const std::filesystem::path& home) {
    return OpenRecordset(Library::open(home / "qx1.mdb", FileKind::Library).library, "Recordings1")
        .RecordCount();
}

// The spots and the quickest songs are there when the call returns; the
// rest come while the station plays, and a run stopped half way goes on at
// the next start without making anything twice.
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
    Recordset first_songs =
        OpenRecordset(Library::open(home / "qx1.mdb", FileKind::Library).library,
                      "SELECT [Long title] FROM Recordings1 WHERE Source IS NULL ORDER BY RecID");
    for (int n = 0; n < 2; ++n, first_songs.MoveNext()) {
        ASSERT_FALSE(first_songs.IsEOF());
        const std::string file = first_songs.Fields("Long title").text();
        EXPECT_EQ(std::filesystem::path(file).extension(), ".flac") << file;
    }
    const long after_stop = rows_in(home);
    EXPECT_GE(after_stop, 19);
    EXPECT_LT(after_stop, 5 + 17);
    for (const auto& entry : std::filesystem::directory_iterator(home / "music"))
        EXPECT_NE(entry.path().extension(), ".part") << "no half-made clip";

    DemoReport resumed = make_demo_library(home, kNow, options);
    ASSERT_EQ(resumed.error, "");
    EXPECT_FALSE(resumed.made);
    ASSERT_NE(resumed.rest, nullptr);
    EXPECT_EQ(resumed.rest->wait(), "");
    EXPECT_EQ(rows_in(home), 5 + 17);
    EXPECT_FALSE(std::filesystem::exists(home / "music" / "demo-unfinished.txt"));
    EXPECT_EQ(make_demo_library(home, kNow, options).rest, nullptr);

    // Every clip plays for its planned length, and sounds.
    Recordset rows =
        OpenRecordset(Library::open(home / "qx1.mdb", FileKind::Library).library, "Recordings1");
    std::set<std::string> formats;
    for (; !rows.IsEOF(); rows.MoveNext()) {
        const auto file = home / "music" / rows.Fields("Long title").text().substr(16);
        formats.insert(file.extension().string());
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
}

}  // namespace
}  // namespace tavora
