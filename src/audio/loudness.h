#pragma once

#include <atomic>
#include <optional>
#include <string>

namespace tavora::audio {

// A record's loudness as EBU R128 measures it.
struct Loudness {
    double integrated_lufs = 0;
    double true_peak_dbtp = 0;
    double seconds = 0;  // audio measured
};

// Decodes the whole file and measures it. Nothing, and the reason in `error`,
// for a file that can't be measured (missing, damaged, a stream, too short for
// a loudness) or when `abort` was set before the end: a measurement is whole or
// it is nothing.
std::optional<Loudness> measure_loudness(const std::string& path, std::string& error,
                                         const std::atomic<bool>* abort = nullptr);

// The same for the stretch from `from` to `to` seconds of the file (a song
// within a recorded mix).
std::optional<Loudness> measure_loudness(const std::string& path, double from, double to,
                                         std::string& error);

}  // namespace tavora::audio
