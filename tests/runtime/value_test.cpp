#include "runtime/value.h"

#include <gtest/gtest.h>

#include "runtime/dates.h"

namespace tavora {
namespace {

TEST(Value, NullFailsEveryComparison) {
    const Value null;
    for (const Value& other : {Value(), Value(0), Value(""), Value::boolean(false)}) {
        EXPECT_FALSE(null == other);
        EXPECT_FALSE(null != other);
        EXPECT_FALSE(null < other);
        EXPECT_FALSE(null <= other);
        EXPECT_FALSE(other > null);
        EXPECT_FALSE(other >= null);
    }
    EXPECT_EQ(null.number(), 0);
    EXPECT_EQ(null.text(), "");
    EXPECT_FALSE(null.truthy());
}

TEST(Value, ComparesNumbersTextAndDates) {
    EXPECT_TRUE(Value(10) > Value("9"));  // as text "10" < "9"
    EXPECT_TRUE(Value("9") < Value(10));
    EXPECT_TRUE(Value(" 5 ") == Value(5));
    EXPECT_TRUE(Value::boolean(true) == Value(-1));
    // Other text sorts after any number and never equals it.
    EXPECT_TRUE(Value(99) < Value("abc"));
    EXPECT_FALSE(Value(99) == Value("99abc"));
    // Text against text compares exactly unless asked.
    EXPECT_FALSE(Value("Snipit") == Value("snipit"));
    EXPECT_TRUE(equals_nocase(Value("Snipit"), Value("SNIPIT")));
    EXPECT_FALSE(equals_nocase(Value("Snipit"), Value("Snipits")));
    EXPECT_TRUE(Value("10") < Value("9"));
    const Value noon = Value::date(TimeSerial(12, 0, 0));
    EXPECT_TRUE(noon > Value("12:00:00 AM"));
    EXPECT_TRUE(noon < Value("11:59:59 PM"));
    EXPECT_TRUE(noon == Value("12:00 PM"));
}

TEST(Value, TextStrAndTruthOfEachKind) {
    EXPECT_EQ(Value(-2.5).text(), "-2.5");
    EXPECT_EQ(Value(0.5).text(), "0.5");
    EXPECT_EQ(Value::boolean(true).text(), "True");
    EXPECT_EQ(Value::boolean(true).number(), -1);
    EXPECT_EQ(Value::date(DateSerial(2026, 3, 4) + TimeSerial(17, 5, 9)).text(),
              "3/4/2026 5:05:09 PM");
    EXPECT_EQ(Value("12abc").number(), 12);
    EXPECT_TRUE(Value("1").truthy());
    EXPECT_TRUE(Value("true").truthy());
    EXPECT_FALSE(Value("False").truthy());
    EXPECT_FALSE(Value(0.0).truthy());
    EXPECT_EQ(Str(Value(3)), " 3");
    EXPECT_EQ(Str(Value("-4x")), "-4");
    EXPECT_EQ(Str(Value::date(DateSerial(2026, 3, 4) + 0.75)), "3/4/2026 6:00:00 PM");
    EXPECT_EQ(Str(Value::boolean(false)), "False");
    EXPECT_EQ(Str(Value()), "");
}

}  // namespace
}  // namespace tavora
