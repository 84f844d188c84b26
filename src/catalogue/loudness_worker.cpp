#include "catalogue/loudness_worker.h"

#include <pthread.h>
#include <sched.h>

#include <chrono>

namespace tavora {

namespace {

// Files replaced on disk are found at the next walk of the library.
constexpr auto kSweepEvery = std::chrono::minutes(10);

enum class Outcome { Measured, Unmeasurable, Current, Missing, Stopped };

Outcome measure_record(LoudnessBook& book, long long rec_id, const std::string& native,
                       const MeasureFile& measure, const std::atomic<bool>* stop) {
    const auto stamp = native.empty() ? std::nullopt : stamp_of(native);
    if (!stamp) return Outcome::Missing;
    if (book.tried(rec_id, native, *stamp)) return Outcome::Current;
    // Records that share a file share its measurement.
    if (const auto known = book.earlier(native, *stamp)) {
        book.store(rec_id, native, *stamp, *known);
        return *known ? Outcome::Measured : Outcome::Unmeasurable;
    }
    std::string error;
    const auto measured = measure(native, error, stop);
    if (stop && stop->load()) return Outcome::Stopped;
    // The file changed while it was read: the result belongs to neither form.
    if (stamp_of(native) != stamp) return Outcome::Stopped;
    book.store(rec_id, native, *stamp, measured);
    return measured ? Outcome::Measured : Outcome::Unmeasurable;
}

// The measuring thread gives way to every other thread of the machine.
void run_when_idle() {
    sched_param none{};
    pthread_setschedparam(pthread_self(), SCHED_IDLE, &none);
}

}  // namespace

LibraryAnalysis measure_library(LoudnessBook& book, const MeasureFile& measure,
                                const NativeFile& native, const std::atomic<bool>* stop,
                                const std::function<void(const LibraryProgress&)>& progress) {
    LibraryAnalysis analysis;
    const auto rows = book.records();
    LibraryProgress step;
    step.total = rows.size();
    for (const auto& row : rows) {
        if (stop && stop->load()) break;
        step.file = native(row.file);
        switch (measure_record(book, row.rec_id, step.file, measure, stop)) {
            case Outcome::Measured:
                ++analysis.measured;
                break;
            case Outcome::Unmeasurable:
                ++analysis.unmeasurable;
                break;
            case Outcome::Current:
                ++analysis.current;
                break;
            case Outcome::Missing:
                ++analysis.missing;
                break;
            case Outcome::Stopped:
                break;
        }
        ++step.done;
        if (progress) progress(step);
    }
    return analysis;
}

LoudnessWorker::LoudnessWorker(std::filesystem::path library, MeasureFile measure,
                               NativeFile native)
    : library_(std::move(library)), measure_(std::move(measure)), native_(std::move(native)) {
    thread_ = std::thread([this] { run(); });
}

LoudnessWorker::~LoudnessWorker() {
    {
        std::lock_guard lock(mutex_);
        stop_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

void LoudnessWorker::add(long long rec_id, const std::string& native) {
    {
        std::lock_guard lock(mutex_);
        queue_.emplace_back(rec_id, native);
        busy_ = true;
    }
    wake_.notify_all();
}

void LoudnessWorker::wait_idle() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] { return !busy_ || stop_; });
}

bool LoudnessWorker::next(std::optional<std::pair<long long, std::string>>& item, bool& sweep) {
    std::unique_lock lock(mutex_);
    if (queue_.empty() && !sweep_due_) {
        busy_ = false;
        idle_.notify_all();
        if (!wake_.wait_for(lock, kSweepEvery, [this] { return stop_ || !queue_.empty(); }))
            sweep_due_ = true;
        busy_ = true;
    }
    if (stop_) return false;
    item.reset();
    sweep = false;
    if (!queue_.empty()) {
        item = std::move(queue_.front());
        queue_.pop_front();
    } else {
        sweep = sweep_due_;
        sweep_due_ = false;
    }
    return true;
}

void LoudnessWorker::run() {
    run_when_idle();
    LoudnessBook book(library_);
    std::optional<std::pair<long long, std::string>> item;
    bool sweep = false;
    while (next(item, sweep)) {
        if (!book.ok()) continue;
        if (item) measure_record(book, item->first, item->second, measure_, &stop_);
        if (sweep) measure_library(book, measure_, native_, &stop_);
    }
    std::lock_guard lock(mutex_);
    busy_ = false;
    idle_.notify_all();
}

}  // namespace tavora
