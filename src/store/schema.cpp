#include "store/schema.h"

#include <array>

#include "store/connection.h"

namespace tavora {

namespace {

using T = ColumnType;

// The last second of the day, the end of an all-day window.
constexpr std::string_view kDayEnd = "(86399.0 / 86400.0)";

constexpr std::array kRecordings = {
    ColumnSpec{"RecID", T::Counter},
    ColumnSpec{"Title", T::Text},
    ColumnSpec{"Artist", T::Text},
    ColumnSpec{"Disc Title", T::Text},
    ColumnSpec{"Category", T::Text},
    ColumnSpec{"Type", T::Text},
    ColumnSpec{"Speed", T::Text},
    ColumnSpec{"Long title", T::Text},
    ColumnSpec{"Sel", T::Number, "0"},
    ColumnSpec{"Total Request", T::Number, "0"},
    ColumnSpec{"Field1", T::Text},
    ColumnSpec{"Min Time Between Plays", T::Time},
    ColumnSpec{"Last Played", T::Date},
    ColumnSpec{"Max Play Day", T::Number},
    ColumnSpec{"How Many Today", T::Number, "0"},
    ColumnSpec{"Max Play Week", T::Number},
    ColumnSpec{"How Many This Week", T::Number, "0"},
    ColumnSpec{"Max Month", T::Number},
    ColumnSpec{"How Many This Month", T::Number, "0"},
    ColumnSpec{"Valid Start time", T::Time, "0"},
    ColumnSpec{"Valid End Time", T::Time, kDayEnd},
    ColumnSpec{"Valid Start Time2", T::Time, "0"},
    ColumnSpec{"Valid End Time2", T::Time, kDayEnd},
    ColumnSpec{"Valid Monday", T::Boolean},
    ColumnSpec{"Valid Tuesday", T::Boolean},
    ColumnSpec{"Valid Wednesday", T::Boolean},
    ColumnSpec{"Valid Thursday", T::Boolean},
    ColumnSpec{"Valid Friday", T::Boolean},
    ColumnSpec{"Valid Saturday", T::Boolean},
    ColumnSpec{"Valid Sunday", T::Boolean},
    ColumnSpec{"CD Track", T::Text},
    ColumnSpec{"CD On", T::Text},
    ColumnSpec{"Spare32", T::Text},
    ColumnSpec{"AccessDate", T::Date},
    ColumnSpec{"CreationDate", T::Date},
    ColumnSpec{"Spare35", T::Text},
    ColumnSpec{"Spare36", T::Text},
    ColumnSpec{"Size", T::Number},
    ColumnSpec{"Format", T::Text},
    ColumnSpec{"Source", T::Text},
    ColumnSpec{"Mix Out", T::Number},
    ColumnSpec{"T40", T::Number, "0"},
    ColumnSpec{"C40", T::Number, "0"},
    ColumnSpec{"D40", T::Number, "0"},
    ColumnSpec{"AM40", T::Number, "0"},
    ColumnSpec{"RTW", T::Number, "0"},
    ColumnSpec{"Request This Month", T::Number, "0"},
    ColumnSpec{"Request AllTime", T::Number, "0"},
    ColumnSpec{"StartVol", T::Number},
    ColumnSpec{"Start Pos", T::Number},
    ColumnSpec{"End Pos", T::Number},
    ColumnSpec{"FadeIn", T::Boolean},
    ColumnSpec{"FadeOut", T::Boolean},
    ColumnSpec{"Spare53", T::Text},
    ColumnSpec{"Schedule Select", T::Number},
    ColumnSpec{"Daily Reset", T::Date},
    ColumnSpec{"Weekly Reset", T::Date},
    ColumnSpec{"Monthly Reset", T::Date},
    ColumnSpec{"Length", T::Time},
    ColumnSpec{"Week1 Requests", T::Number, "0"},
    ColumnSpec{"Week2 Requests", T::Number, "0"},
    ColumnSpec{"Week3 Requests", T::Number, "0"},
    ColumnSpec{"Week4 Requests", T::Number, "0"},
};
static_assert(kRecordings.size() == 63);

constexpr std::array kSchedule = {
    ColumnSpec{"ID", T::Counter},           ColumnSpec{"Name", T::Text},
    ColumnSpec{"Power", T::Boolean},        ColumnSpec{"Use PL", T::Boolean},
    ColumnSpec{"DOMALL", T::Boolean},       ColumnSpec{"DOM1", T::Number},
    ColumnSpec{"Override", T::Number, "0"}, ColumnSpec{"DOWALL", T::Boolean},
    ColumnSpec{"Mo", T::Boolean},           ColumnSpec{"Tu", T::Boolean},
    ColumnSpec{"We", T::Boolean},           ColumnSpec{"Th", T::Boolean},
    ColumnSpec{"Fr", T::Boolean},           ColumnSpec{"Sa", T::Boolean},
    ColumnSpec{"Su", T::Boolean},           ColumnSpec{"Type1", T::Text},
    ColumnSpec{"STime", T::Time, "0"},      ColumnSpec{"ETime", T::Time, kDayEnd},
    ColumnSpec{"Run Now", T::Boolean},
};
static_assert(kSchedule.size() == 19);

constexpr std::array kTypeLookup = {
    ColumnSpec{"ID", T::Counter},
    ColumnSpec{"Type", T::Text},
};

constexpr std::array kDSearch = {
    ColumnSpec{"ID", T::Counter},
    ColumnSpec{"Category", T::Text},
    ColumnSpec{"ValidFiles", T::Text, "'15'"},
    ColumnSpec{"ExcludeFiles", T::Text, "'99'"},
};

constexpr std::array kPlaylist = {
    ColumnSpec{"ID", T::Counter},         ColumnSpec{"Selection", T::Number},
    ColumnSpec{"List Number", T::Number}, ColumnSpec{"Link Key", T::Text},
    ColumnSpec{"List Value", T::Number},  ColumnSpec{"Spare5", T::Text},
    ColumnSpec{"List Order", T::Number},
};

constexpr std::array kPlaylistLink = {
    ColumnSpec{"ID", T::Counter},
    ColumnSpec{"Name", T::Text},
    ColumnSpec{"List Number", T::Number},
};

constexpr std::array kSetup = {
    ColumnSpec{"ID", T::Counter},
    ColumnSpec{"Active Database", T::Text},
    ColumnSpec{"Use Playlist", T::Boolean},
    ColumnSpec{"Spare3", T::Text},
    ColumnSpec{"Spare4", T::Text},
    ColumnSpec{"Spare5", T::Text},
    ColumnSpec{"Spare6", T::Text},
    ColumnSpec{"Use Schedule", T::Boolean},
    ColumnSpec{"MorS", T::Boolean},
    ColumnSpec{"Default Mix Out", T::Number, "5"},
    ColumnSpec{"Use Time Filter", T::Boolean},
    ColumnSpec{"Use Weekday Filter", T::Boolean},
    ColumnSpec{"Use Max Plays", T::Boolean},
    ColumnSpec{"Time For New Day", T::Time},
    ColumnSpec{"Current Day", T::Date},
    ColumnSpec{"Current Week", T::Date},
    ColumnSpec{"Current Month", T::Date},
};

constexpr std::array kDriveLookup = {
    ColumnSpec{"ID", T::Counter},
    ColumnSpec{"AliasDrive", T::Text},
    ColumnSpec{"Drive", T::Text},
};

constexpr std::array kStoredQueries = {
    ColumnSpec{"Name", T::Text},
    ColumnSpec{"SQL", T::Text},
};

const std::array kLibraryTables = {
    TableSpec{"Recordings1", kRecordings}, TableSpec{"Schedule", kSchedule},
    TableSpec{"Type Lookup", kTypeLookup}, TableSpec{"DSearch", kDSearch},
    TableSpec{"Playlist", kPlaylist},      TableSpec{"PlayList Link", kPlaylistLink},
};

const std::array kSettingsTables = {
    TableSpec{"Setup", kSetup},
    TableSpec{"DriveLookup", kDriveLookup},
};

const TableSpec kStoredQueryTable{"Stored Queries", kStoredQueries, "UNIQUE (\"Name\")"};

}  // namespace

std::span<const TableSpec> tables_of(FileKind kind) {
    if (kind == FileKind::Library) return kLibraryTables;
    return kSettingsTables;
}

const TableSpec& recordings_table() {
    return kLibraryTables[0];
}

const TableSpec& stored_query_table() {
    return kStoredQueryTable;
}

std::string create_table_sql(const TableSpec& table) {
    std::string sql = "CREATE TABLE IF NOT EXISTS " + quote_identifier(table.name) + " (";
    bool first = true;
    for (const ColumnSpec& column : table.columns) {
        if (!first) sql += ", ";
        first = false;
        sql += quote_identifier(column.name);
        sql += ' ';
        sql += declared_type(column.type);
        if (column.type == ColumnType::Counter) sql += " PRIMARY KEY AUTOINCREMENT";
        // Text compares and sorts without regard to case, as the queries
        // were written for.
        if (column.type == ColumnType::Text) sql += " COLLATE NOCASE";
        // Yes/no fields are never Null unless a value says so: False.
        const std::string_view fallback = column.type == ColumnType::Boolean ? "0" : "";
        const std::string_view default_sql =
            column.default_sql.empty() ? fallback : column.default_sql;
        if (!default_sql.empty()) {
            sql += " DEFAULT ";
            sql += default_sql;
        }
    }
    if (!table.constraint.empty()) {
        sql += ", ";
        sql += table.constraint;
    }
    sql += ')';
    return sql;
}

}  // namespace tavora
