#include "platform/path_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "test_folder.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;

class PathMapTest : public ::testing::Test {
  protected:
    PathMapTest() : map(root.path() / "home" / "tavora") {
        fs::create_directories(map.install_folder());
    }
    std::string Native(const std::string& dos) {
        const auto r = map.ToNative(dos);
        EXPECT_EQ(r.status, PathMap::Status::Mapped) << dos;
        return r.path;
    }
    std::string Under(const std::string& relative) { return (root.path() / relative).string(); }

    TestFolder root;
    PathMap map;
};

TEST_F(PathMapTest, DefaultDrivesMapBothWays) {
    EXPECT_EQ(Native("c:\\tavora\\qx1.mdb"), Under("home/tavora/qx1.mdb"));
    EXPECT_EQ(Native("c:\\other\\x.txt"), Under("home/other/x.txt"));
    EXPECT_EQ(Native("c:\\tavora2\\x.txt"), Under("home/tavora2/x.txt"));
    EXPECT_EQ(Native("z:\\usr\\share"), "/usr/share");
    EXPECT_EQ(Native("C:\\TAVORA\\web\\qxstat.txt"), Under("home/tavora/web/qxstat.txt"));
    EXPECT_EQ(Native("c:/tavora//manual/tqxhead1.htm"), Under("home/tavora/manual/tqxhead1.htm"));

    EXPECT_EQ(map.ToDos(Under("home/tavora/qx1.mdb")), "c:\\tavora\\qx1.mdb");
    EXPECT_EQ(map.ToDos(map.install_folder()), "c:\\tavora");
    EXPECT_EQ(map.ToDos(Under("home/music/a b.mp3")), "c:\\music\\a b.mp3");
    EXPECT_EQ(map.ToDos("/usr/share/x"), "z:\\usr\\share\\x");
    EXPECT_EQ(map.ToDos("/"), "z:\\");
    EXPECT_EQ(map.ToDos("relative/name.mp3"), "relative/name.mp3");
}

TEST_F(PathMapTest, FurtherLettersUnmappedDrivesAndCaseFallback) {
    map.SetDrive('D', root.path() / "music");
    map.SetDrive('e', root.path() / "music" / "chart");
    EXPECT_EQ(Native("d:\\Song - Artist.mp3"), Under("music/Song - Artist.mp3"));
    EXPECT_EQ(Native("D:\\rock\\a.mp3"), Under("music/rock/a.mp3"));
    EXPECT_EQ(map.ToDos(Under("music/rock/a.mp3")), "d:\\rock\\a.mp3");
    EXPECT_EQ(map.ToDos(Under("music/chart/b.mp3")), "e:\\b.mp3");
    EXPECT_EQ(map.ToDos(Under("music/")), "d:\\");
    // A folder whose name merely starts like a mapped one is not under it.
    std::string z = "z:" + Under("musicbox/c.mp3");
    std::replace(z.begin(), z.end(), '/', '\\');
    EXPECT_EQ(map.ToDos(Under("musicbox/c.mp3")), z);

    map.SetDrive('d', {});
    EXPECT_FALSE(map.DriveFolder('d'));
    EXPECT_EQ(map.ToDos(Under("music/rock/a.mp3")).substr(0, 3), "z:\\");

    const auto none = map.ToNative("q:\\music\\x.mp3");
    EXPECT_EQ(none.status, PathMap::Status::NoSuchDrive);
    EXPECT_FALSE(none.ok());
    EXPECT_EQ(none.path, "q:\\music\\x.mp3");

    for (const std::string text :
         {"http://radio.example/stream.mp3", "QXPL My List", "CD1234567:3", "qx1.mdb", "",
          "/already/native.mp3", "\\\\server\\share\\x.mp3"}) {
        const auto r = map.ToNative(text);
        EXPECT_EQ(r.status, PathMap::Status::PassThrough) << text;
        EXPECT_EQ(r.path, text);
    }

    map.SetDrive('d', root.path() / "Music");
    root.Write("Music/Rock Hits/Song - Artist.MP3");
    root.Write("Music/exact.mp3");
    EXPECT_EQ(Native("d:\\rock hits\\song - artist.mp3"),
              Under("Music/Rock Hits/Song - Artist.MP3"));
    EXPECT_EQ(Native("d:\\exact.mp3"), Under("Music/exact.mp3"));
    // Nothing matches: the plain mapping, so the caller sees a missing file.
    EXPECT_EQ(Native("d:\\rock hits\\other.mp3"), Under("Music/rock hits/other.mp3"));
}

TEST(ResolveInstallFolder, OptionThenEnvironmentThenHome) {
    const char* old_home = std::getenv("HOME");
    const std::string saved_home = old_home ? old_home : "";
    setenv("HOME", "/home/operator", 1);
    unsetenv("TAVORA_HOME");
    EXPECT_EQ(ResolveInstallFolder(std::nullopt), "/home/operator/tavora");
    setenv("TAVORA_HOME", "/srv/station/", 1);
    EXPECT_EQ(ResolveInstallFolder(std::nullopt), "/srv/station");
    EXPECT_EQ(ResolveInstallFolder(std::string("/opt/tv")), "/opt/tv");
    unsetenv("TAVORA_HOME");
    if (old_home) setenv("HOME", saved_home.c_str(), 1);
}

}  // namespace
}  // namespace tavora
