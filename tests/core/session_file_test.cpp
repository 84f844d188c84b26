#include "core/settings/session_file.h"

#include <gtest/gtest.h>

#include "core/settings/extensions.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "test_folder.h"

namespace tavora {
namespace {

std::filesystem::path write_file(const TestFolder& folder, const std::string& text) {
    auto path = folder.path() / "qxbp.ini";
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

std::string text_of(const std::filesystem::path& path) {
    std::stringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

TEST(SessionFile, RoundTripKeepsEveryValueButTheSeventhPlayerView) {
    TestFolder folder;
    Station written;
    written.BP_On = true;
    written.BP_Block = 4;
    written.Vid_On = true;
    written.Ply7_View = false;
    written.CD_On = true;
    written.Ply7_MixOut = 9;
    written.Antiskip = 3;
    written.Marq_On = false;
    written.Log_Due = 0;
    written.Wnd_Left = 100;
    written.Wnd_State = 0;
    written.Snip_Max = 2;
    written.Least_Every = 20;
    ASSERT_TRUE(BP_Ini(written, folder.path() / "qxbp.ini"));

    // Start-up pins the writing order, so reading back and writing again shows any line
    // read into the wrong variable.
    Station read;
    ASSERT_TRUE(Read_BP(read, folder.path() / "qxbp.ini"));
    EXPECT_TRUE(read.Ply7_View);
    read.Ply7_View = false;
    ASSERT_TRUE(BP_Ini(read, folder.path() / "again.ini"));
    EXPECT_EQ(text_of(folder.path() / "again.ini"), text_of(folder.path() / "qxbp.ini"));
}

// Only 1 on the first lines means True. Text where a number belongs is a
// read error: passed over on the first two lines, the end of the reading
// after them.
TEST(SessionFile, OddLinesReadAsTheyAlwaysHave) {
    TestFolder folder;
    Station station;
    station.BP_On = true;
    ASSERT_TRUE(Read_BP(station, write_file(folder, "2\n-1\n")));
    EXPECT_FALSE(station.BP_On);
    EXPECT_FALSE(station.BP_Tuesday);
    station.BP_On = true;
    ASSERT_TRUE(Read_BP(station, write_file(folder, "x\n1\nmany\n40\n")));
    EXPECT_TRUE(station.BP_On);
    EXPECT_TRUE(station.BP_Tuesday);
    EXPECT_EQ(station.BP_Block, Station{}.BP_Block);
    EXPECT_EQ(station.BP_Chars, Station{}.BP_Chars);

    Station fresh;
    ASSERT_TRUE(Read_BP(fresh, write_file(folder, "1\n")));
    EXPECT_TRUE(fresh.BP_On);
    EXPECT_FALSE(fresh.BP_Tuesday);
    EXPECT_EQ(fresh.BP_Block, 2);
    EXPECT_EQ(fresh.Least_Every, 15);
    // A missing file is a failure that changes nothing.
    EXPECT_FALSE(Read_BP(fresh, folder.path() / "none.ini"));
    EXPECT_EQ(fresh.BP_Block, 2);
}

// tavora.ini: written whole, read back; a value it can't read keeps the
// default and is named, and the other lines still count.
TEST(ExtensionSettings, RoundTripAndABadValueKeepsTheDefault) {
    TestFolder folder;
    const auto file = folder.path() / "tavora.ini";
    std::vector<std::string> complaints;
    EXPECT_TRUE(read_extensions(file, &complaints).Bridge_Songs_Only);
    EXPECT_TRUE(complaints.empty()) << "a missing file is no complaint";

    Extensions off;
    off.Bridge_Songs_Only = false;
    ASSERT_TRUE(write_extensions(off, file));
    EXPECT_NE(text_of(file).find("Seventh Player Songs Only=0\r\n"), std::string::npos);
    EXPECT_FALSE(read_extensions(file).Bridge_Songs_Only);

    std::ofstream(file, std::ios::binary) << "Unknown=5\nSeventh Player Songs Only = maybe\n";
    EXPECT_TRUE(read_extensions(file, &complaints).Bridge_Songs_Only);
    ASSERT_EQ(complaints.size(), 1u);
    EXPECT_EQ(complaints[0],
              "tavora.ini: \"maybe\" is no value for Seventh Player Songs Only; it stays 1");
}

}  // namespace
}  // namespace tavora
