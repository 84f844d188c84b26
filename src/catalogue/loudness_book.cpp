#include "catalogue/loudness_book.h"

#include <algorithm>
#include <chrono>

namespace tavora {

double normalising_gain(const std::optional<Measurement>& measured, const LoudnessTarget& target) {
    if (!target.on || !measured) return 0.0;
    const double gain = target.target_lufs - measured->integrated_lufs;
    return std::min(gain, target.ceiling_dbtp - measured->true_peak_dbtp);
}

std::optional<FileStamp> stamp_of(const std::filesystem::path& file) {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (error) return std::nullopt;
    const auto time = std::filesystem::last_write_time(file, error);
    if (error) return std::nullopt;
    return FileStamp{
        static_cast<long long>(size),
        static_cast<long long>(
            std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count())};
}

LoudnessBook::LoudnessBook(const std::filesystem::path& library)
    : db_(library, Connection::Mode::OpenExisting) {
    if (!db_.ok()) return;
    db_.exec(
        "CREATE TABLE IF NOT EXISTS Loudness (RecID INTEGER PRIMARY KEY, File TEXT NOT NULL, "
        "FileSize INTEGER NOT NULL, FileTime INTEGER NOT NULL, Integrated REAL, TruePeak REAL)");
    db_.exec("CREATE INDEX IF NOT EXISTS LoudnessFile ON Loudness (File)");
}

std::vector<LoudnessBook::Row> LoudnessBook::records() {
    std::vector<Row> rows;
    Statement query = db_.prepare("SELECT RecID, [Long title] FROM Recordings1 ORDER BY RecID");
    while (query.step() == Statement::Step::Row)
        rows.push_back({query.column_int64(0), query.column_text(1)});
    return rows;
}

std::optional<Measurement> LoudnessBook::find(const std::string& native) {
    const auto stamp = stamp_of(native);
    if (!stamp) return std::nullopt;
    Statement query = db_.prepare(
        "SELECT Integrated, TruePeak FROM Loudness WHERE File = ? AND FileSize = ? AND "
        "FileTime = ? AND Integrated IS NOT NULL LIMIT 1");
    query.bind_text(1, native);
    query.bind_int64(2, stamp->size);
    query.bind_int64(3, stamp->time);
    if (query.step() != Statement::Step::Row) return std::nullopt;
    return Measurement{query.column_value(0, ColumnType::Number).number(),
                       query.column_value(1, ColumnType::Number).number()};
}

bool LoudnessBook::tried(long long rec_id, const std::string& native, const FileStamp& stamp) {
    Statement query = db_.prepare(
        "SELECT 1 FROM Loudness WHERE RecID = ? AND File = ? AND FileSize = ? AND FileTime = ?");
    query.bind_int64(1, rec_id);
    query.bind_text(2, native);
    query.bind_int64(3, stamp.size);
    query.bind_int64(4, stamp.time);
    return query.step() == Statement::Step::Row;
}

std::optional<std::optional<Measurement>> LoudnessBook::earlier(const std::string& native,
                                                                const FileStamp& stamp) {
    Statement query = db_.prepare(
        "SELECT Integrated, TruePeak FROM Loudness WHERE File = ? AND FileSize = ? AND "
        "FileTime = ? LIMIT 1");
    query.bind_text(1, native);
    query.bind_int64(2, stamp.size);
    query.bind_int64(3, stamp.time);
    if (query.step() != Statement::Step::Row) return std::nullopt;
    const Value level = query.column_value(0, ColumnType::Number);
    if (level.is_null()) return std::optional<Measurement>();
    return std::optional<Measurement>(
        Measurement{level.number(), query.column_value(1, ColumnType::Number).number()});
}

bool LoudnessBook::store(long long rec_id, const std::string& native, const FileStamp& stamp,
                         const std::optional<Measurement>& measured) {
    Statement insert = db_.prepare(
        "INSERT OR REPLACE INTO Loudness (RecID, File, FileSize, FileTime, Integrated, TruePeak) "
        "VALUES (?, ?, ?, ?, ?, ?)");
    insert.bind_int64(1, rec_id);
    insert.bind_text(2, native);
    insert.bind_int64(3, stamp.size);
    insert.bind_int64(4, stamp.time);
    insert.bind(5, measured ? Value(measured->integrated_lufs) : Value());
    insert.bind(6, measured ? Value(measured->true_peak_dbtp) : Value());
    return insert.step() == Statement::Step::Done;
}

}  // namespace tavora
