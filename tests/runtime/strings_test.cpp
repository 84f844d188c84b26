#include "runtime/strings.h"

#include <gtest/gtest.h>

namespace tavora {
namespace {

TEST(Strings, LeftMidRightOnPaths) {
    const std::string path = "c:\\tavora\\qx1.mdb";
    EXPECT_EQ(Left(path, 2), "c:");
    EXPECT_EQ(Mid(path, 2, 2), ":\\");
    EXPECT_EQ(Right(path, 3), "mdb");
    EXPECT_EQ(Mid(path, 11), "qx1.mdb");
    EXPECT_EQ(Left(path, 100), path);
    EXPECT_EQ(Right(path, 100), path);
    EXPECT_EQ(Mid(path, 100), "");
    EXPECT_EQ(Mid(path, 0, 2), "c:");
}

TEST(Strings, CountCharactersNotBytes) {
    const std::string title = "Beyonc\xC3\xA9 - Caf\xC3\xA9";  // two accented e's
    EXPECT_EQ(Len(title), 14u);
    EXPECT_EQ(Left(title, 6), "Beyonc");
    EXPECT_EQ(Left(title, 7), "Beyonc\xC3\xA9");
    EXPECT_EQ(Right(title, 1), "\xC3\xA9");
    EXPECT_EQ(Mid(title, 7, 3), "\xC3\xA9 -");
    EXPECT_EQ(InStr(title, "Caf"), 11u);
    // A broken sequence counts byte by byte and is never split further.
    EXPECT_EQ(Len("a\xC3z"), 3u);
    EXPECT_EQ(Len("\xE2\x82"), 2u);
}

TEST(Strings, InStrTrimAndCase) {
    EXPECT_EQ(InStr("Title - Artist", " - "), 6u);
    EXPECT_EQ(InStr("Title - Artist", "x"), 0u);
    EXPECT_EQ(InStr("abcabc", "c"), 3u);
    EXPECT_EQ(InStr(4, "abcabc", "c"), 6u);
    EXPECT_EQ(InStr(7, "abcabc", "c"), 0u);
    EXPECT_EQ(InStr("abc", ""), 1u);
    EXPECT_EQ(InStr(3, "abc", ""), 3u);
    EXPECT_EQ(InStr(5, "abc", ""), 0u);
    EXPECT_EQ(InStr("ab", "abc"), 0u);
    EXPECT_EQ(InStr("Snipit Promo", "PROMO"), 0u);
    EXPECT_EQ(InStr("Snipit Promo", "PROMO", TextCompare::Text), 8u);
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(LTrim("  a "), "a ");
    EXPECT_EQ(RTrim(" a  "), " a");
    EXPECT_EQ(Trim("\ta\t"), "\ta\t");  // blanks only
    EXPECT_EQ(Trim("    "), "");
    EXPECT_EQ(UCase("Qx1.mdb z"), "QX1.MDB Z");
    EXPECT_EQ(LCase("C:\\TAVORA\\Qx1.MDB"), "c:\\tavora\\qx1.mdb");
    EXPECT_EQ(UCase("caf\xC3\xA9"), "CAF\xC3\xA9");
}

}  // namespace
}  // namespace tavora
