#include "store/library.h"

#include <algorithm>
#include <set>
#include <system_error>

#include "runtime/strings.h"
#include "store/jet_sql.h"
#include "store/row_cache.h"

namespace tavora {

namespace {

std::string unbracket(std::string_view name) {
    if (name.size() >= 2 && name.front() == '[' && name.back() == ']') {
        return std::string(name.substr(1, name.size() - 2));
    }
    return std::string(name);
}

bool starts_with_select(std::string_view source) {
    return LCase(Left(Trim(source), 6)) == "select";
}

// Reads the list of tables; fails on a file that isn't SQLite.
std::optional<std::set<std::string>> table_names(Connection& connection, std::string& error) {
    Statement query = connection.prepare("SELECT name FROM sqlite_schema WHERE type = 'table'");
    std::set<std::string> names;
    Statement::Step step;
    while ((step = query.step()) == Statement::Step::Row)
        names.insert(LCase(query.column_text(0)));
    if (step == Statement::Step::Error || !query.ok()) {
        error = query.error().empty() ? connection.error() : query.error();
        return std::nullopt;
    }
    return names;
}

void fill_columns(QueryPlan& plan, const Statement& statement, int first = 0) {
    for (int i = first; i < statement.column_count(); ++i) {
        plan.names.push_back(statement.column_name(i));
        plan.types.push_back(statement.column_declared_type(i));
    }
}

}  // namespace

Library::Opened Library::open(const std::filesystem::path& path, FileKind kind) {
    const std::string shown = path.string();
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return {nullptr, "File not found: " + shown};
    Connection connection(path, Connection::Mode::OpenExisting);
    if (!connection.ok()) return {nullptr, "Can't open " + shown + ": " + connection.error()};
    std::string error;
    const auto names = table_names(connection, error);
    if (!names) return {nullptr, shown + " is not a database file (" + error + ")"};
    for (const TableSpec& table : tables_of(kind)) {
        if (names->count(LCase(table.name)) == 0) {
            return {nullptr, shown + " lacks the table " + std::string(table.name)};
        }
    }
    const double version = connection.scalar("PRAGMA user_version").number();
    if (version > kSchemaVersion) {
        return {nullptr, shown + " was made by a newer version of Tavora (file version " +
                             std::to_string(static_cast<long long>(version)) + ")"};
    }
    // A rollback journal, not WAL: a second PC may open the file over a
    // network share, where WAL's shared memory doesn't work. FULL syncs
    // each commit so a power cut never leaves half a row.
    if (LCase(connection.scalar("PRAGMA journal_mode").text()) != "delete") {
        connection.exec("PRAGMA journal_mode = DELETE");
    }
    connection.exec("PRAGMA synchronous = FULL");
    connection.exec("PRAGMA cache_size = -16384");
    return {std::shared_ptr<Library>(new Library(path, std::move(connection))), {}};
}

Library::Library(std::filesystem::path path, Connection connection)
    : path_(std::move(path)),
      connection_(std::move(connection)),
      last_outside_check_(std::chrono::steady_clock::now()),
      data_version_query_(connection_.prepare("PRAGMA data_version")),
      begin_read_(connection_.prepare("BEGIN")),
      end_read_(connection_.prepare("COMMIT")) {
    if (data_version_query_.step() == Statement::Step::Row) {
        data_version_ = data_version_query_.column_int64(0);
    }
    data_version_query_.reset();
}

std::uint64_t Library::generation() {
    const auto now = std::chrono::steady_clock::now();
    if (now - last_outside_check_ >= outside_interval_) {
        last_outside_check_ = now;
        look_outside();
    }
    return generation_;
}

void Library::look_outside() {
    if (data_version_query_.step() == Statement::Step::Row) {
        const long long version = data_version_query_.column_int64(0);
        if (version != data_version_) {
            data_version_ = version;
            note_write();
            // Another program may have rewritten the stored query texts.
            forget_plans();
        }
    }
    data_version_query_.reset();
}

void Library::note_write() {
    everything_changed_at_ = ++generation_;
}

void Library::note_write(const std::vector<std::string>& columns) {
    ++generation_;
    for (const std::string& column : columns)
        column_changed_at_[column_key(column)] = generation_;
}

bool Library::changed_since(std::uint64_t generation, const QueryPlan& plan) {
    const std::uint64_t now = this->generation();
    if (now == generation) return false;
    if (plan.reads.volatile_answer || everything_changed_at_ > generation) return true;
    return std::any_of(plan.reads.columns.begin(), plan.reads.columns.end(),
                       [&](const std::string& column) {
                           const auto found = column_changed_at_.find(column);
                           return found != column_changed_at_.end() && found->second > generation;
                       });
}

Transaction Library::transaction() {
    return Transaction(connection_, [this] { note_write(); });
}

bool Library::table_exists(std::string_view name) {
    Statement query = connection_.prepare(
        "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ? COLLATE NOCASE");
    query.bind_text(1, name);
    return query.step() == Statement::Step::Row;
}

std::optional<std::string> Library::stored_query_text(std::string_view name) {
    Statement query =
        connection_.prepare("SELECT \"SQL\" FROM " + quote_identifier(stored_query_table().name) +
                            " WHERE \"Name\" = ?");
    query.bind_text(1, name);
    if (query.step() != Statement::Step::Row) return std::nullopt;
    return query.column_text(0);
}

std::shared_ptr<QueryPlan> Library::plan(std::string_view record_source, std::string& error) {
    if (const auto found = plans_.find(record_source); found != plans_.end()) {
        return found->second;
    }
    auto plan = std::make_shared<QueryPlan>();
    std::optional<std::string> sql;
    if (starts_with_select(record_source)) {
        sql = std::string(record_source);
    } else {
        sql = stored_query_text(Trim(record_source));
    }
    if (sql) {
        JetTranslation translation = translate_jet_sql(*sql);
        if (translation.table.empty()) {
            plan->run = prepare_noting_reads(connection_, translation.sql, plan->reads);
            fill_columns(*plan, plan->run);
        } else {
            plan->table = unbracket(translation.table);
            plan->run = prepare_noting_reads(connection_, translation.rowid_sql, plan->reads);
        }
    } else if (table_exists(Trim(record_source))) {
        plan->table = Trim(record_source);
        // In the order rows were added, even where an index could give the
        // keys faster in another order.
        plan->run = prepare_noting_reads(
            connection_, "SELECT rowid FROM " + quote_identifier(plan->table) + " ORDER BY rowid",
            plan->reads);
    } else {
        error = "Can't find the table or query '" + std::string(record_source) + "'";
        return nullptr;
    }
    if (!plan->table.empty()) {
        const Statement& fetch = fetch_statement(*this, *plan, kAllFields);
        fill_columns(*plan, fetch, 1);
        if (!fetch.ok()) {
            error = fetch.error();
            return nullptr;
        }
    }
    if (!plan->run.ok()) {
        error = plan->run.error();
        return nullptr;
    }
    plans_.emplace(std::string(record_source), plan);
    return plan;
}

Library::ReadBatch::ReadBatch(Library& library) : library_(library) {
    if (!library_.connection_.in_transaction()) {
        began_ = library_.begin_read_.step() == Statement::Step::Done;
        library_.begin_read_.reset();
    }
}

Library::ReadBatch::~ReadBatch() {
    if (!began_) return;
    library_.end_read_.step();
    library_.end_read_.reset();
}

Library::Opened LibraryPool::open(const std::filesystem::path& path, FileKind kind) {
    std::error_code ec;
    std::string key = std::filesystem::weakly_canonical(path, ec).string();
    if (ec) key = path.string();
    if (auto it = open_.find(key); it != open_.end()) {
        if (auto library = it->second.lock()) return {library, {}};
    }
    Library::Opened opened = Library::open(path, kind);
    if (opened.library) open_[key] = opened.library;
    return opened;
}

}  // namespace tavora
