#include "store/library_files.h"

#include <functional>
#include <utility>
#include <vector>

#include "runtime/dates.h"
#include "store/library.h"
#include "store/schema.h"
#include "store/stored_queries.h"

namespace tavora {

namespace {

using Row = std::vector<std::pair<std::string_view, Value>>;

bool insert_row(Connection& connection, std::string_view table, const Row& row) {
    std::string names;
    std::string marks;
    for (const auto& [name, value] : row) {
        names += (names.empty() ? "" : ", ") + quote_identifier(name);
        marks += marks.empty() ? "?" : ", ?";
    }
    Statement insert = connection.prepare("INSERT INTO " + quote_identifier(table) + " (" + names +
                                          ") VALUES (" + marks + ")");
    int parameter = 1;
    for (const auto& entry : row)
        insert.bind(parameter++, entry.second);
    return insert.step() == Statement::Step::Done;
}

// The master categories: "Always" and the genres the stored queries look
// for. Their keys stay below 20, which marks them as masters.
constexpr std::string_view kMasterCategories[] = {"Always", "POP",     "ROCK",    "Dance",
                                                  "AM",     "Country", "Holiday", "Xmas"};
constexpr int kFirstUserCategory = 20;

bool fill_library(Connection& connection) {
    const Value yes = Value::boolean(true);
    const Value no = Value::boolean(false);
    bool ok = insert_row(connection, "Schedule",
                         {{"Name", "Always"},
                          {"Power", yes},
                          {"Use PL", no},
                          {"DOMALL", yes},
                          {"DOM1", 1},
                          {"Override", 0},
                          {"DOWALL", no},
                          {"Mo", yes},
                          {"Tu", yes},
                          {"We", yes},
                          {"Th", yes},
                          {"Fr", yes},
                          {"Sa", yes},
                          {"Su", yes},
                          {"Type1", "Always"},
                          {"STime", Value::date(0)},
                          {"ETime", Value::date(TimeSerial(23, 59, 59))},
                          {"Run Now", yes}});
    // The walks over the weights pass over the first row, so it stands for
    // no category.
    ok = ok && insert_row(connection, "DSearch",
                          {{"Category", "(none)"}, {"ValidFiles", "15"}, {"ExcludeFiles", "99"}});
    int key = 1;
    for (const std::string_view category : kMasterCategories) {
        ok = ok && insert_row(connection, "Type Lookup",
                              {{"ID", key++}, {"Type", std::string(category)}});
        ok = ok && insert_row(connection, "DSearch",
                              {{"Category", std::string(category)},
                               {"ValidFiles", "15"},
                               {"ExcludeFiles", "99"}});
    }
    Statement next_key =
        connection.prepare("UPDATE sqlite_sequence SET seq = ? WHERE name = 'Type Lookup'");
    next_key.bind(1, kFirstUserCategory - 1);
    return ok && next_key.step() == Statement::Step::Done;
}

bool fill_settings(Connection& connection, double now) {
    const Value today = Value::date(DateValueOf(now));
    return insert_row(connection, "Setup",
                      {{"Active Database", "c:\\tavora\\qx1.mdb"},
                       {"Use Playlist", Value::boolean(false)},
                       {"Use Schedule", Value::boolean(false)},
                       {"MorS", Value::boolean(false)},
                       {"Time For New Day", Value::date(TimeSerial(6, 0, 0))},
                       {"Current Day", today},
                       {"Current Week", today},
                       {"Current Month", today}});
}

std::string create_file(const std::filesystem::path& path, FileKind kind,
                        const std::function<bool(Connection&)>& fill) {
    std::error_code ec;
    if (std::filesystem::exists(path, ec)) return path.string() + " already exists";
    std::filesystem::path part = path;
    part += ".part";
    std::filesystem::remove(part, ec);
    {
        Connection connection(part, Connection::Mode::Create);
        bool ok = connection.ok() && connection.exec("PRAGMA journal_mode = DELETE") &&
                  connection.exec("BEGIN");
        for (const TableSpec& table : tables_of(kind)) {
            ok = ok && connection.exec(create_table_sql(table));
        }
        ok = ok && fill(connection) &&
             connection.exec("PRAGMA user_version = " + std::to_string(kSchemaVersion)) &&
             connection.exec("COMMIT");
        if (!ok) {
            const std::string error = "Can't create " + path.string() + ": " + connection.error();
            connection = Connection();
            std::filesystem::remove(part, ec);
            return error;
        }
    }
    std::filesystem::rename(part, path, ec);
    if (ec) {
        std::filesystem::remove(part, ec);
        return "Can't create " + path.string() + ": " + ec.message();
    }
    return {};
}

}  // namespace

std::string create_library_file(const std::filesystem::path& path, double now) {
    std::string error = create_file(path, FileKind::Library, fill_library);
    if (!error.empty()) return error;
    const Library::Opened opened = Library::open(path, FileKind::Library);
    if (!opened.library) return opened.error;
    return Make_Qrys(*opened.library, now, {});
}

std::string create_settings_file(const std::filesystem::path& path, double now) {
    return create_file(path, FileKind::Settings,
                       [now](Connection& connection) { return fill_settings(connection, now); });
}

}  // namespace tavora
