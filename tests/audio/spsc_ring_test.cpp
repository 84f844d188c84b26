#include "audio/spsc_ring.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

namespace tavora::audio {
namespace {

TEST(SpscRing, KeepsOrderAndCapacity) {
    SpscRing<int> ring(3);
    EXPECT_TRUE(ring.push(1));
    EXPECT_TRUE(ring.push(2));
    EXPECT_TRUE(ring.push(3));
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

// Two threads at full speed: every value arrives once, in order, whole.
TEST(SpscRing, HandsOverBetweenThreadsWithoutLossOrTearing) {
    struct Pair {
        std::uint64_t a = 0;
        std::uint64_t b = 0;
    };
    SpscRing<Pair> ring(64);
    constexpr std::uint64_t kCount = 200000;
    std::thread producer([&ring] {
        for (std::uint64_t i = 1; i <= kCount;) {
            if (Pair* slot = ring.reserve()) {
                *slot = Pair{i, ~i};
                ring.publish();
                ++i;
            }
        }
    });
    std::uint64_t next = 1;
    bool torn = false;
    while (next <= kCount) {
        if (const Pair* slot = ring.front()) {
            if (slot->a != next || slot->b != ~next) torn = true;
            ring.release();
            ++next;
        }
    }
    producer.join();
    EXPECT_FALSE(torn);
}

}  // namespace
}  // namespace tavora::audio
