#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tavora {

// What an install did, in words for the operator.
struct InstallReport {
    std::vector<std::string> made;  // files and folders created
    std::vector<std::string> kept;  // found already and left alone
    std::string error;              // empty when the folder is ready
};

// Makes the install folder as an installer leaves it: the settings file,
// an empty library and the web and manual folders. Never overwrites a
// library or settings file that is there already.
InstallReport install_station(const std::filesystem::path& home, double now);

}  // namespace tavora
