#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "catalogue/loudness_book.h"

namespace tavora {

// Measures one file (a native path); nothing, and why, when it can't be
// measured or `stop` was set first. The front end gives the engine's.
using MeasureFile = std::function<std::optional<Measurement>(
    const std::string& native, std::string& error, const std::atomic<bool>* stop)>;
// A record's stored file as a native path; empty for what isn't a local file
// (a stream, a CD track, a drive this machine doesn't have).
using NativeFile = std::function<std::string(const std::string& stored)>;

struct LibraryProgress {
    std::size_t done = 0;
    std::size_t total = 0;
    std::string file;  // the file just finished
};
struct LibraryAnalysis {
    std::size_t measured = 0;
    std::size_t unmeasurable = 0;  // tried: no level, plays at the rules' level
    std::size_t current = 0;       // measured before, file unchanged
    std::size_t missing = 0;       // no file to measure
};

// Measures every record whose file, as it is now, has not been tried. Each
// result is stored as soon as it is whole; `stop` ends the walk between two
// files, or inside one, which then stores nothing.
LibraryAnalysis measure_library(LoudnessBook& book, const MeasureFile& measure,
                                const NativeFile& native, const std::atomic<bool>* stop = nullptr,
                                const std::function<void(const LibraryProgress&)>& progress = {});

// Measures the library on a thread that runs only when the machine has
// nothing else to do, so no decode the air waits for is ever slowed: first
// every record not yet measured, then each record as the catalogue adds it,
// and the whole library again now and then for files replaced on disk.
class LoudnessWorker {
  public:
    LoudnessWorker(std::filesystem::path library, MeasureFile measure, NativeFile native);
    // Stops at once: a measurement under way is dropped, not stored.
    ~LoudnessWorker();
    LoudnessWorker(const LoudnessWorker&) = delete;
    LoudnessWorker& operator=(const LoudnessWorker&) = delete;

    // A record the catalogue has just added.
    void add(long long rec_id, const std::string& native);
    // Waits until nothing is left to measure; for tests and tools.
    void wait_idle();

  private:
    void run();
    bool next(std::optional<std::pair<long long, std::string>>& item, bool& sweep);

    std::filesystem::path library_;
    MeasureFile measure_;
    NativeFile native_;
    std::mutex mutex_;
    std::condition_variable wake_, idle_;
    std::deque<std::pair<long long, std::string>> queue_;
    bool sweep_due_ = true;
    bool busy_ = true;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

}  // namespace tavora
