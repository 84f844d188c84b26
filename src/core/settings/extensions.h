#pragma once

#include <filesystem>
#include <string>
#include <string_view>
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

    // The dead-air watchdog: air under `Dead_Air_Level` dBFS for
    // `Dead_Air_Hold` seconds, unexplained by a break, a pause or the end of
    // the run, is logged, skipped, and then covered by the emergency files
    // of `Dead_Air_Folder` (the demo's snipits when empty).
    bool Dead_Air_Watch = true;
    double Dead_Air_Level = -45;
    double Dead_Air_Hold = 8;
    std::string Dead_Air_Folder;

    // Loudness normalisation: each measured record is brought to
    // `Loudness_Target` LUFS on top of its own level, its true peak kept
    // under `Loudness_Ceiling` dBTP.
    bool Loudness_Normalise = true;
    double Loudness_Target = -18;
    double Loudness_Ceiling = -1;
};

// Reads the file over the defaults. A line that can't be read keeps the
// default and adds a complaint naming it; a missing file is no complaint.
Extensions read_extensions(const std::filesystem::path& file,
                           std::vector<std::string>* complaints = nullptr);

bool write_extensions(const Extensions& settings, const std::filesystem::path& file);

// One setting by its name in the file, as text: false, and nothing changed,
// for a value the setting can't take or a name it doesn't know.
bool set_extension(Extensions& settings, std::string_view name, const std::string& value);
std::string extension_text(const Extensions& settings, std::string_view name);

}  // namespace tavora
