#include "platform/clock.h"

#include <chrono>
#include <ctime>
#include <thread>

#include "runtime/dates.h"

namespace tavora {

namespace {
constexpr double kMsPerDay = 86'400'000.0;
}

double SystemClock::Now() const {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::time_t secs = system_clock::to_time_t(now);
    const auto ms = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    localtime_r(&secs, &local);
    return DateSerial(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday) +
           TimeSerial(local.tm_hour, local.tm_min, local.tm_sec) +
           static_cast<double>(ms < 0 ? ms + 1000 : ms) / kMsPerDay;
}

void SystemClock::BKWait(std::int64_t ms) {
    if (ms > 0) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

VirtualClock::VirtualClock(double start) : origin_(start) {}

double VirtualClock::Now() const {
    return origin_ + static_cast<double>(elapsed_ms_) / kMsPerDay;
}

void VirtualClock::Advance(std::int64_t ms) {
    if (ms <= 0) return;
    const std::int64_t from = elapsed_ms_;
    elapsed_ms_ += ms;
    if (hook_) hook_(from, elapsed_ms_);
}

void VirtualClock::Set(double date) {
    origin_ = date - static_cast<double>(elapsed_ms_) / kMsPerDay;
}

}  // namespace tavora
