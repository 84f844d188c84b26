#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace tavora {

struct DemoOptions {
    std::size_t songs = 64;  // at least 60 in the shipped demo
    // Above 0: only so many rows (the spots, then the songs quickest to
    // make) are made before the call returns, and the report's `rest` makes
    // the others while the station plays. 0 makes everything first.
    std::size_t first = 0;
    // For tests that only time the files: one format and a lower rate for
    // every clip. Empty and 0 give the demo's own.
    std::string format;
    int rate = 0;
    // Called with a line of progress for the operator.
    std::function<void(const std::string&)> say;
};

// The demo's clips still to make, made on a thread of low priority while
// the station plays; each row goes into the library once its file is whole.
// Destruction stops the work and waits: a clip cut short leaves nothing.
class DemoRest {
  public:
    struct Work;
    explicit DemoRest(std::unique_ptr<Work> work);
    ~DemoRest();
    DemoRest(const DemoRest&) = delete;
    DemoRest& operator=(const DemoRest&) = delete;
    // Waits until every clip is made; the error of the first that failed.
    std::string wait();

  private:
    std::unique_ptr<Work> work_;
    std::atomic<bool> stop_{false};
    std::string error_;
    std::thread thread_;
};

struct DemoReport {
    bool made = false;               // false when the library had recordings already
    std::size_t rows = 0;            // rows added to the library so far
    std::string error;               // empty on success
    std::unique_ptr<DemoRest> rest;  // set when clips are left to make
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
