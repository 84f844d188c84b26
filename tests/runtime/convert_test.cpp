#include "runtime/convert.h"

#include <gtest/gtest.h>

namespace tavora {
namespace {

TEST(Str, LeadingBlankUnlessNegative) {
    EXPECT_EQ(Str(7), " 7");
    EXPECT_EQ(Str(-0.0), " 0");
    EXPECT_EQ(Str(-3), "-3");
    EXPECT_EQ(Str(12.25), " 12.25");
    EXPECT_EQ(Str(0.5), " .5");
    EXPECT_EQ(Str(-0.5), "-.5");
}

TEST(NumberText, FifteenSignificantDigits) {
    EXPECT_EQ(number_text(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(number_text(0.1 + 0.2), "0.3");
    EXPECT_EQ(number_text(123456789012345.0), "123456789012345");
    EXPECT_EQ(number_text(1e15), "1E+15");
    EXPECT_EQ(number_text(0.0001), "0.0001");
    EXPECT_EQ(number_text(0.00001), "1E-05");
}

TEST(Val, LeadingNumberOnly) {
    EXPECT_EQ(Val("  -12.5kb"), -12.5);
    EXPECT_EQ(Val("1 2 3"), 123);
    EXPECT_EQ(Val("\t7\r\n"), 7);
    EXPECT_EQ(Val("1,000"), 1);
    EXPECT_EQ(Val("abc"), 0);
    EXPECT_EQ(Val("-"), 0);
    EXPECT_EQ(Val(".5"), 0.5);
    EXPECT_EQ(Val("--3"), 0);
    EXPECT_EQ(Val("1.5e3x"), 1500);
    EXPECT_EQ(Val("2D2"), 200);
    EXPECT_EQ(Val("7e+"), 7);
    EXPECT_EQ(Val("1.2.3"), 1.2);
    EXPECT_EQ(Val("1e999"), 0);  // out of range: no infinity leaks out
}

TEST(Val, HexAndOctal) {
    EXPECT_EQ(Val("&H1F"), 31);
    EXPECT_EQ(Val("&HFFFF"), -1);
    EXPECT_EQ(Val("&H10000"), 65536);
    EXPECT_EQ(Val("&HFFFFFFFF"), -1);
    EXPECT_EQ(Val("&O17"), 15);
    EXPECT_EQ(Val("&O8"), 0);
}

TEST(IsNumeric, WholeTextMustBeANumber) {
    EXPECT_TRUE(IsNumeric(" -1.5e2 "));
    EXPECT_TRUE(IsNumeric(".5"));
    for (const char* text : {"", "   ", "12a", "1 2", "-", "1e"}) {
        EXPECT_FALSE(IsNumeric(text)) << text;
    }
}

TEST(Rounding, HalfToEvenAndClamped) {
    EXPECT_EQ(CInt(0.5), 0);
    EXPECT_EQ(CInt(1.5), 2);
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(-3.5), -4);
    EXPECT_EQ(CInt(2.5000001), 3);
    EXPECT_EQ(CInt(40000), 32767);
    EXPECT_EQ(CInt(-40000), -32768);
    EXPECT_EQ(CLng(40000.5), 40000);
    EXPECT_EQ(CLng(1e12), 2147483647);
    EXPECT_EQ(CLng(0.0 / 0.0), 0);
    EXPECT_EQ(Int(-2.1), -3);
    EXPECT_EQ(Fix(-2.7), -2);
}

}  // namespace
}  // namespace tavora
