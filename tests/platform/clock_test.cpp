#include "platform/clock.h"

#include <gtest/gtest.h>

#include <ctime>

#include "runtime/dates.h"

namespace tavora {
namespace {

TEST(SystemClock, NowIsLocalTimeWithMillisecondsAndTheWaitTakesItsTime) {
    SystemClock clock;
    const std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    const double before = clock.Now();
    EXPECT_NEAR((before - DateSerial(1970, 1, 1)) * 86400.0,
                static_cast<double>(t + local.tm_gmtoff), 2.0);
    clock.BKWait(30);
    const double waited_ms = (clock.Now() - before) * 86'400'000.0;
    EXPECT_GE(waited_ms, 29.0);
    EXPECT_LT(waited_ms, 1000.0);
}

}  // namespace
}  // namespace tavora
