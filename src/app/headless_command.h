#pragma once

#include <optional>
#include <string>

namespace tavora {

// Runs the station without windows on the wall clock until SIGINT or
// SIGTERM, answering every dialog with its default. Plays to the sound card,
// or to nowhere when `output` is "null"; what airs and every dialog are
// written to standard output in the simulator's event lines. With `record`, a
// recorder profile (a path, or a name in the install folder), the air is recorded
// and streamed as it says from the start; `web` serves the request page and API;
// `cd_image`, a folder, stands for the disc in the CD drive.
int run_headless(const std::optional<std::string>& home, const std::string& output,
                 const std::string& record = {}, const std::string& web = {},
                 const std::string& cd_image = {});

}  // namespace tavora
