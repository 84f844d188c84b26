#include "runtime/random.h"

#include <gtest/gtest.h>

namespace tavora {
namespace {

TEST(Random, SameSequenceEveryStartInUnitRange) {
    Random a;
    Random b;
    EXPECT_NEAR(a.next(), 0.7055475, 1e-7);
    EXPECT_NEAR(a.next(), 0.533424, 1e-6);
    b.next();
    b.next();
    for (int i = 0; i < 100000; ++i) {
        const double x = a.next();
        ASSERT_EQ(x, b.next());
        ASSERT_GE(x, 0.0);
        ASSERT_LT(x, 1.0);
    }
}

}  // namespace
}  // namespace tavora
