#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tavora {

// What the station does beyond the rules, each with its own switch: off
// gives exactly the rules' behaviour. Kept in tavora.ini in the install
// folder, one "Name=value" a line, so the rules' own files keep their form.
struct Extensions {
    // The seventh player's fallback draws again when it lands on a clip too
    // short to bridge a set change (the rules' own limit for that slot).
    bool Bridge_Songs_Only = true;
    // The CD drive: a folder standing for a disc (one file a track), or
    // empty for the machine's drive, `CD_Device` (empty: the default one).
    std::string CD_Image;
    std::string CD_Device;
};

// Reads the file over the defaults. A line that can't be read keeps the
// default and adds a complaint naming it; a missing file is no complaint.
Extensions read_extensions(const std::filesystem::path& file,
                           std::vector<std::string>* complaints = nullptr);

bool write_extensions(const Extensions& settings, const std::filesystem::path& file);

}  // namespace tavora
