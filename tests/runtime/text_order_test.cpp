#include <gtest/gtest.h>

#include "runtime/text_order.h"

namespace tavora {
namespace {

bool before(const char* a, const char* b) {
    return first_char_order(a) < first_char_order(b);
}

TEST(TextOrder, GroupsRunBlanksSymbolsDigitsLetters) {
    EXPECT_EQ(first_char_order(""), 0u);
    EXPECT_TRUE(before("", " "));
    EXPECT_TRUE(before(" x", "(What"));
    EXPECT_TRUE(before("_Hidden", "1999"));
    EXPECT_TRUE(before("~", "0"));
    EXPECT_TRUE(before("9", "a"));
    EXPECT_TRUE(before("\xC2\xBF", "A"));    // inverted question mark
    EXPECT_TRUE(before("zoo", "\xCE\xA9"));  // Greek omega after the Latin letters
}

TEST(TextOrder, CaseIsIgnoredAndAccentsFollowTheirLetter) {
    EXPECT_EQ(first_char_order("abba"), first_char_order("ABBA"));
    EXPECT_EQ(first_char_order("\xC3\xA9"), first_char_order("\xC3\x89"));  // é, É
    EXPECT_EQ(first_char_order("\xC5\xA1"), first_char_order("\xC5\xA0"));  // š, Š
    EXPECT_EQ(first_char_order("\xC5\x82"), first_char_order("\xC5\x81"));  // ł, Ł
    EXPECT_TRUE(before("E",
                       "\xC3\x89"
                       "dith"));
    EXPECT_TRUE(
        before("\xC3\x89"
               "dith",
               "F"));
    EXPECT_TRUE(before("\xC3\x85ngstr\xC3\xB6m", "B"));   // Å
    EXPECT_TRUE(before("N", "\xC3\x91u"));                // Ñ
    EXPECT_TRUE(before("\xC5\xBDivot", "\xE3\x81\x82"));  // Ž before a kana
    EXPECT_TRUE(before("y", "\xC3\xBF"));                 // ÿ
    EXPECT_TRUE(before("\xC3\x97", "0"));                 // the multiplication sign
}

// A stray byte reads as the Latin-1 character it would be.
TEST(TextOrder, BrokenUtf8CountsByItsFirstByte) {
    EXPECT_EQ(first_char_order("\xC3"), first_char_order("\xC3("));
    EXPECT_EQ(first_char_order("\xC3"), first_char_order("\xC3\x83"));
    EXPECT_TRUE(before("\xC3", "B"));
}

}  // namespace
}  // namespace tavora
