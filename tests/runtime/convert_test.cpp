#include "runtime/convert.h"

#include <gtest/gtest.h>

#include <utility>

namespace tavora {
namespace {

TEST(NumberText, StrHasALeadingBlankTextFifteenDigits) {
    const std::pair<double, const char*> cases[] = {{7, " 7"},         {-0.0, " 0"}, {-3, "-3"},
                                                    {12.25, " 12.25"}, {0.5, " .5"}, {-0.5, "-.5"}};
    for (const auto& [number, text] : cases)
        EXPECT_EQ(Str(number), text);
    EXPECT_EQ(number_text(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(number_text(0.1 + 0.2), "0.3");
    EXPECT_EQ(number_text(123456789012345.0), "123456789012345");
    EXPECT_EQ(number_text(1e15), "1E+15");
    EXPECT_EQ(number_text(0.0001), "0.0001");
    EXPECT_EQ(number_text(0.00001), "1E-05");
}

TEST(Val, LeadingNumberHexAndOctalIsNumericTheWholeText) {
    // "1e999" is out of range: no infinity leaks out.
    const std::pair<const char*, double> cases[] = {
        {"  -12.5kb", -12.5}, {"1 2 3", 123}, {"\t7\r\n", 7}, {"1,000", 1},
        {"abc", 0},           {"-", 0},       {".5", 0.5},    {"--3", 0},
        {"1.5e3x", 1500},     {"2D2", 200},   {"7e+", 7},     {"1.2.3", 1.2},
        {"1e999", 0},         {"&H1F", 31},   {"&HFFFF", -1}, {"&H10000", 65536},
        {"&HFFFFFFFF", -1},   {"&O17", 15},   {"&O8", 0}};
    for (const auto& [text, value] : cases)
        EXPECT_EQ(Val(text), value) << text;
    EXPECT_TRUE(IsNumeric(" -1.5e2 "));
    EXPECT_TRUE(IsNumeric(".5"));
    for (const char* text : {"", "   ", "12a", "1 2", "-", "1e"})
        EXPECT_FALSE(IsNumeric(text)) << text;
}

TEST(Rounding, HalfToEvenAndClamped) {
    const std::pair<double, int> cint[] = {{0.5, 0},       {1.5, 2},        {2.5, 2},
                                           {-2.5, -2},     {-3.5, -4},      {2.5000001, 3},
                                           {40000, 32767}, {-40000, -32768}};
    for (const auto& [number, rounded] : cint)
        EXPECT_EQ(CInt(number), rounded) << number;
    EXPECT_EQ(CLng(40000.5), 40000);
    EXPECT_EQ(CLng(1e12), 2147483647);
    EXPECT_EQ(CLng(0.0 / 0.0), 0);
    EXPECT_EQ(Int(-2.1), -3);
    EXPECT_EQ(Fix(-2.7), -2);
}

}  // namespace
}  // namespace tavora
