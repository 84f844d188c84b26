#include "platform/file_ops.h"

#include <gtest/gtest.h>

#include "test_folder.h"

namespace tavora {
namespace {

TEST(FileOps, FailuresAreReportedNotThrownAndListMatchesWildcardsIgnoringCase) {
    TestFolder dir;
    const auto a = dir.Write("a.mdb", "new");
    const auto b = dir.Write("b.mdb", "older text");
    EXPECT_TRUE(files::Copy(a, b));
    EXPECT_EQ(files::Length(b), 3u) << "copy overwrites";
    EXPECT_FALSE(files::Length(dir.path() / "missing"));
    EXPECT_FALSE(files::Exists(dir.path())) << "a folder is not a file";
    EXPECT_FALSE(files::Copy(dir.path() / "missing", b));
    EXPECT_FALSE(files::Copy(a, dir.path() / "no" / "folder" / "c.mdb"));

    EXPECT_FALSE(files::Name(a, b)) << "rename never replaces a file";
    EXPECT_TRUE(files::Exists(a));
    EXPECT_TRUE(files::Name(a, dir.path() / "c.mdb"));
    EXPECT_FALSE(files::Exists(a));
    EXPECT_FALSE(files::Name(a, dir.path() / "d.mdb"));

    EXPECT_TRUE(files::Kill(b));
    EXPECT_FALSE(files::Kill(b));
    EXPECT_FALSE(files::Kill(dir.path())) << "kill deletes files only";

    EXPECT_TRUE(files::MakeDir(dir.path() / "web"));
    EXPECT_FALSE(files::MakeDir(dir.path() / "web"));
    EXPECT_FALSE(files::MakeDir(dir.path() / "x" / "y"));

    dir.Write("Song.MP3");
    dir.Write("b.mp3");
    dir.Write("a.wav");
    dir.Write("qxl1123.log");
    dir.Write("sub.mp3/inner.mp3");  // a folder named like a match
    EXPECT_EQ(files::List(dir.path(), "*.mp3"), (std::vector<std::string>{"Song.MP3", "b.mp3"}));
    EXPECT_EQ(files::List(dir.path(), "QXL*.log"), (std::vector<std::string>{"qxl1123.log"}));
    EXPECT_TRUE(files::List(dir.path() / "missing", "*.*").empty());

    EXPECT_TRUE(files::WildcardMatch("qx?.mdb", "qx1.mdb"));
    EXPECT_FALSE(files::WildcardMatch("qx?.mdb", "qx12.mdb"));
    EXPECT_TRUE(files::WildcardMatch("*a*b*", "xxaYYbzz"));
    EXPECT_FALSE(files::WildcardMatch("*a*b", "xxaYYbzz"));
    EXPECT_TRUE(files::WildcardMatch("*", ""));
    EXPECT_TRUE(files::WildcardMatch("*.*", "README"));
    EXPECT_FALSE(files::WildcardMatch("*.mp3", "mp3"));
    EXPECT_FALSE(files::WildcardMatch("?", ""));
}

}  // namespace
}  // namespace tavora
