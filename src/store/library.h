#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/connection.h"
#include "store/query_reads.h"
#include "store/schema.h"
#include "store/transaction.h"

namespace tavora {

// What a record source runs as, prepared once and kept until the stored
// queries or the file change.
struct QueryPlan {
    // Non-empty when the source selects whole rows of one table: the run
    // yields row keys and rows are read by key from this table.
    std::string table;
    Statement run;
    // By the set of fields they read: the row key and those fields, for
    // the keys between two bounds.
    std::map<std::uint64_t, Statement> fetches;
    // The fields any walk of this source asked for so far: a block is read
    // with all of them, so the next walk finds its fields in one read.
    std::uint64_t wanted = 0;
    std::vector<std::string> names;
    std::vector<ColumnType> types;
    // What the run reads, so that a write elsewhere needn't run it again.
    QueryReads reads;
};

// One open library or settings file, shared by every data control and
// recordset that works on it.
class Library {
  public:
    struct Opened {
        std::shared_ptr<Library> library;
        std::string error;  // why the file can't be used; empty when opened
    };

    // Fails, writing nothing, when the file is missing, isn't SQLite, lacks
    // the tables of its kind or comes from a newer build.
    static Opened open(const std::filesystem::path& path, FileKind kind);

    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    const std::filesystem::path& path() const { return path_; }
    Connection& connection() { return connection_; }

    // Moves whenever the file changed: at once for writes made through this
    // object, and for writes by other connections when next looked at,
    // which happens at most once per outside-check interval so that an
    // unchanged refresh costs no file access.
    std::uint64_t generation();
    // The generation as last seen, without looking for outside writes.
    std::uint64_t known_generation() const { return generation_; }
    // A write whose reach isn't known: every query may answer otherwise.
    void note_write();
    // A write of these columns of rows that were there and stay.
    void note_write(const std::vector<std::string>& columns);
    // Whether the plan, run at `generation`, might give other rows now: a
    // write it can't see into (an unknown one, one by another program) or
    // one of a column it reads says yes.
    bool changed_since(std::uint64_t generation, const QueryPlan& plan);
    // Looks for writes by other connections now, whatever the interval.
    void look_outside();
    void set_outside_check_interval(std::chrono::milliseconds interval) {
        outside_interval_ = interval;
    }

    // Batches writes; a rollback counts as a change so cached rows are read
    // again.
    Transaction transaction();

    // Resolves a stored query name, a table name or SQL text. Null with an
    // error when it names nothing or the text doesn't prepare.
    std::shared_ptr<QueryPlan> plan(std::string_view record_source, std::string& error);
    // Drops the prepared plans, after the stored query texts were rewritten;
    // every recordset runs its source again.
    void forget_plans() {
        plans_.clear();
        note_write();
    }

    std::optional<std::string> stored_query_text(std::string_view name);

    // Holds one read transaction over a batch of row reads, unless a
    // transaction is open already.
    class ReadBatch {
      public:
        explicit ReadBatch(Library& library);
        ReadBatch(const ReadBatch&) = delete;
        ReadBatch& operator=(const ReadBatch&) = delete;
        ~ReadBatch();

      private:
        Library& library_;
        bool began_ = false;
    };

  private:
    Library(std::filesystem::path path, Connection connection);
    bool table_exists(std::string_view name);

    std::filesystem::path path_;
    Connection connection_;
    std::uint64_t generation_ = 1;
    std::uint64_t everything_changed_at_ = 1;
    std::map<std::string, std::uint64_t, std::less<>> column_changed_at_;
    std::chrono::milliseconds outside_interval_{100};
    std::chrono::steady_clock::time_point last_outside_check_;
    long long data_version_ = 0;
    Statement data_version_query_;
    Statement begin_read_;
    Statement end_read_;
    std::map<std::string, std::shared_ptr<QueryPlan>, std::less<>> plans_;
};

// Keeps one Library per file, so that a write through any data control is
// seen at once by every other one on the same file.
class LibraryPool {
  public:
    Library::Opened open(const std::filesystem::path& path, FileKind kind);

  private:
    std::map<std::string, std::weak_ptr<Library>> open_;
};

}  // namespace tavora
