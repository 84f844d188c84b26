#include <gtest/gtest.h>

#include <fstream>

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
    EXPECT_EQ(first.made.size(), 7u);
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

// Generates real media with ffmpeg, so the song count is kept small here.
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

}  // namespace
}  // namespace tavora
