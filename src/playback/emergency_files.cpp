#include "playback/emergency_files.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>

#include "runtime/strings.h"

namespace tavora {

namespace {

bool is_media(const std::filesystem::path& file) {
    static const std::vector<std::string> kinds = {".mp3", ".wav", ".ogg",  ".flac", ".m4a",
                                                   ".wma", ".aac", ".opus", ".mp2",  ".asf"};
    const std::string ext = LCase(file.extension().string());
    return std::find(kinds.begin(), kinds.end(), ext) != kinds.end();
}

// Media files of a folder whose names begin with `prefix`, by name.
std::vector<std::string> media_in(const std::filesystem::path& folder, const std::string& prefix) {
    std::vector<std::string> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (!entry.is_regular_file(error) || !is_media(entry.path())) continue;
        if (entry.path().filename().string().rfind(prefix, 0) == 0)
            found.push_back(entry.path().string());
    }
    std::sort(found.begin(), found.end());
    return found;
}

void put_le(std::ofstream& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.put(static_cast<char>((value >> (8 * i)) & 0xff));
}

// Thirty seconds of a soft fifth, 16-bit mono: something any decoder plays.
bool write_tone(const std::filesystem::path& file) {
    constexpr std::uint32_t kRate = 48000;
    constexpr std::uint32_t kFrames = kRate * 30;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write("RIFF", 4);
    put_le(out, 36 + kFrames * 2, 4);
    out.write("WAVEfmt ", 8);
    put_le(out, 16, 4);
    put_le(out, 1, 2);  // PCM
    put_le(out, 1, 2);  // mono
    put_le(out, kRate, 4);
    put_le(out, kRate * 2, 4);
    put_le(out, 2, 2);
    put_le(out, 16, 2);
    out.write("data", 4);
    put_le(out, kFrames * 2, 4);
    constexpr double kPi = 3.14159265358979323846;
    for (std::uint32_t i = 0; i < kFrames; ++i) {
        const double t = static_cast<double>(i) / kRate;
        const double sample = 0.1 * (std::sin(2 * kPi * 440 * t) + std::sin(2 * kPi * 660 * t));
        put_le(out, static_cast<std::uint16_t>(static_cast<std::int16_t>(sample * 32767)), 2);
    }
    return static_cast<bool>(out.flush());
}

}  // namespace

std::string emergency_tone(const PathMap& paths) {
    const std::filesystem::path tone = paths.install_folder() / "deadair_tone.wav";
    if (!std::filesystem::exists(tone)) write_tone(tone);
    return tone.string();
}

EmergencyFiles emergency_files(const std::string& folder, const PathMap& paths) {
    EmergencyFiles chosen;
    if (!Trim(folder).empty()) {
        const PathMap::Result native = paths.ToNative(Trim(folder));
        chosen.files = media_in(native.ok() ? native.path : Trim(folder), "");
        if (!chosen.files.empty()) return chosen;
        chosen.note = "no playable file in " + folder + ", playing the station snipits";
    }
    const std::filesystem::path home = paths.install_folder();
    chosen.files = media_in(home / "music", "Station Snipit");
    if (!chosen.files.empty()) return chosen;
    chosen.files = {emergency_tone(paths)};
    chosen.note = "no emergency file to play, playing a tone";
    return chosen;
}

}  // namespace tavora
