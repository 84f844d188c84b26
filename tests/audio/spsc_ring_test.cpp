#include "audio/spsc_ring.h"

#include <gtest/gtest.h>

namespace tavora::audio {
namespace {

TEST(SpscRing, KeepsOrderAndCapacity) {
    SpscRing<int> ring(3);
    for (int value : {1, 2, 3})
        EXPECT_TRUE(ring.push(value));
    EXPECT_FALSE(ring.push(4));
    int out = 0;
    ASSERT_TRUE(ring.pop(out));
    EXPECT_EQ(out, 1);
    EXPECT_TRUE(ring.push(4));  // wraps around
    for (int expected : {2, 3, 4}) {
        ASSERT_TRUE(ring.pop(out));
        EXPECT_EQ(out, expected);
    }
    EXPECT_FALSE(ring.pop(out));
}

}  // namespace
}  // namespace tavora::audio
