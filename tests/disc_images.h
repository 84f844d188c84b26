#pragma once

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace tavora {

// Disc images for the CD player's tests: a folder of WAV files, one a track,
// each a quiet tone exactly `frames` CD frames long (75 a second). Lengths
// are kept to multiples of 3 frames so that they fall on whole samples at
// the 8 kHz the images are written at.
inline void write_track(const std::filesystem::path& file, long frames) {
    constexpr int kRate = 8000;
    const long samples = frames * kRate / 75;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    auto le = [&out](std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            out.put(static_cast<char>((value >> (8 * i)) & 0xFF));
    };
    const auto data = static_cast<std::uint32_t>(samples * 2);
    out.write("RIFF", 4);
    le(36 + data, 4);
    out.write("WAVEfmt ", 8);
    le(16, 4);
    le(1, 2);
    le(1, 2);
    le(kRate, 4);
    le(kRate * 2, 4);
    le(2, 2);
    le(16, 2);
    out.write("data", 4);
    le(data, 4);
    for (long i = 0; i < samples; ++i)
        le(static_cast<std::uint16_t>(static_cast<std::int16_t>(
               3000 * std::sin(2 * 3.14159265358979 * 440.0 * static_cast<double>(i) / kRate))),
           2);
}

// "NN Track.wav" for each length, in a new folder.
inline std::filesystem::path make_disc(const std::filesystem::path& folder,
                                       const std::vector<long>& frames) {
    std::filesystem::create_directories(folder);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "%02zu Track.wav", i + 1);
        write_track(folder / name, frames[i]);
    }
    return folder;
}

// 01:10:21, 00:50:00 and 02:00:03: a disc of 04:00:24 whose key is
// (4 + 0 + 24) * 3 + (1 + 10 + 21) = 116.
inline const std::vector<long> kThreeTracks{70 * 75 + 21, 50 * 75, 120 * 75 + 3};

}  // namespace tavora
