#pragma once

#include <optional>
#include <string>

namespace tavora {

// Runs the station without windows on the wall clock until SIGINT or
// SIGTERM, answering every dialog with its default and logging it.
int run_headless(const std::optional<std::string>& home);

}  // namespace tavora
