#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>

namespace tavora {

struct DemoOptions {
    std::size_t songs = 64;  // at least 60 in the shipped demo
    // Called with a line of progress for the operator.
    std::function<void(const std::string&)> say;
};

struct DemoReport {
    bool made = false;     // false when the library had recordings already
    std::size_t rows = 0;  // rows added to the library
    std::string error;     // empty on success
};

// Installs when needed and, when the library holds no recordings, fills it
// with generated songs in several formats and genres: mix points, snipits,
// an hourly promo, charted songs with their lead-in clips, the schedule's
// all-day row, auto start and the seventh player on. Songs go to the
// install folder's "music" folder.
DemoReport make_demo_library(const std::filesystem::path& home, double now,
                             const DemoOptions& options);

// Adds copies of the demo's songs, each with its own title and artist and
// off the charts, until the library of `home` holds `rows` recordings: a
// library of a real station's size on a few files, for trying the rules at
// scale. Returns an error, or empty.
std::string grow_demo_library(const std::filesystem::path& home, std::size_t rows);

}  // namespace tavora
