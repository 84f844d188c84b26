#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/path_map.h"

namespace tavora {

// What the dead-air watchdog plays when the bank stays silent, in order.
struct EmergencyFiles {
    std::vector<std::string> files;  // native paths; never empty
    std::string note;                // why another choice than the folder's was made
};

// The playable files of `folder` (a stored or a native path) by name; with an
// empty setting, the demo's station snipits. An empty or missing folder falls
// back to the snipits, and having none of those either, to a tone the station
// writes once into its install folder.
EmergencyFiles emergency_files(const std::string& folder, const PathMap& paths);

// The tone, written into the install folder the first time it is asked for.
std::string emergency_tone(const PathMap& paths);

}  // namespace tavora
