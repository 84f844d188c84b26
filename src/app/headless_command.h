#pragma once

#include <optional>
#include <string>

namespace tavora {

// Runs the station without windows on the wall clock until SIGINT or
// SIGTERM, answering every dialog with its default. Plays to the sound card,
// or to nowhere when `output` is "null"; what airs and every dialog are
// written to standard output in the simulator's event lines.
int run_headless(const std::optional<std::string>& home, const std::string& output,
                 const std::string& web = {});

}  // namespace tavora
