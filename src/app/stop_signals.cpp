#include "stop_signals.h"

#include <atomic>
#include <csignal>

namespace tavora {

namespace {

std::atomic<bool> requested{false};

extern "C" void request_stop(int) {
    requested = true;
}

}  // namespace

void catch_stop_signals() {
    struct sigaction action {};
    action.sa_handler = request_stop;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool stop_requested() {
    return requested;
}

}  // namespace tavora
