#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "store/connection.h"

namespace tavora {

// A record's measured loudness (EBU R128): integrated level and true peak.
struct Measurement {
    double integrated_lufs = 0;
    double true_peak_dbtp = 0;
};

// How loud the station plays its records: the level every record is brought
// to, and the true peak no gain may push a record past. Off plays the rules'
// levels exactly.
struct LoudnessTarget {
    bool on = true;
    double target_lufs = -18;
    double ceiling_dbtp = -1;
};

// Decibels to add to a record's own level to bring it to the target, no more
// than keeps its true peak under the ceiling; 0 when off or unmeasured.
double normalising_gain(const std::optional<Measurement>& measured, const LoudnessTarget& target);

// A file as it lies on disk; another size or time means another file.
struct FileStamp {
    long long size = 0;
    long long time = 0;  // modification time, nanoseconds
    bool operator==(const FileStamp&) const = default;
};
std::optional<FileStamp> stamp_of(const std::filesystem::path& file);

// The library's table of measured loudness, `Loudness`, beside `Recordings1`:
// one row a record, for the file as it was when measured. A row without a
// level says the file was tried and can't be measured. One connection of its
// own, so each thread that reads or writes has its own book.
class LoudnessBook {
  public:
    explicit LoudnessBook(const std::filesystem::path& library);
    bool ok() const { return db_.ok(); }

    struct Row {
        long long rec_id = 0;
        std::string file;  // the record's `Long title`, as stored
    };
    // Every record of `Recordings1`, in RecID order.
    std::vector<Row> records();

    // The measurement of the file `native` as it is now, if one was made.
    std::optional<Measurement> find(const std::string& native);
    // Whether the record's file, as it is now, has been tried (measured or not).
    bool tried(long long rec_id, const std::string& native, const FileStamp& stamp);
    // The outcome of an earlier try of the same file for any record: the
    // outer optional says whether there was one, the inner what it found.
    std::optional<std::optional<Measurement>> earlier(const std::string& native,
                                                      const FileStamp& stamp);
    // Replaces the record's row in one statement: never half a measurement.
    bool store(long long rec_id, const std::string& native, const FileStamp& stamp,
               const std::optional<Measurement>& measured);

  private:
    Connection db_;
};

}  // namespace tavora
