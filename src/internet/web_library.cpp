#include "internet/web_library.h"

#include <algorithm>

namespace tavora {

namespace {

constexpr const char* kPlain = "(Source IS NULL OR Source = '')";
constexpr const char* kMatches = "(Title LIKE ?1 ESCAPE '\\' OR Artist LIKE ?1 ESCAPE '\\')";

// The chart a record is on, the last rule winning as in the web list.
std::string chart_of(const Statement& row) {
    const auto position = [&row](int column, long low, long high) {
        const Value v = row.column_value(column, ColumnType::Number);
        const double n = v.is_null() ? 0 : v.number();
        return n >= low && n <= high ? static_cast<long>(n) : 0L;
    };
    std::string chart;
    if (const long ac = position(3, 1, 49)) chart = "AC #" + std::to_string(ac);
    if (const long dance = position(4, 1, 49)) chart = "Dance #" + std::to_string(dance);
    if (const long top = position(5, 1, 200)) chart = "Top 40 #" + std::to_string(top);
    return chart;
}

}  // namespace

std::string contains_pattern(const std::string& text) {
    std::string pattern = "%";
    for (const char c : text) {
        if (c == '%' || c == '_' || c == '\\') pattern += '\\';
        pattern += c;
    }
    return pattern + "%";
}

WebLibrary::WebLibrary(const std::filesystem::path& library)
    : connection_(library, Connection::Mode::OpenExisting) {
    // The web only reads; a slip can never write to the library.
    if (connection_.ok()) connection_.exec("PRAGMA query_only = 1");
}

WebLibrary::Page WebLibrary::search(const std::string& query, int page, int per_page) {
    Page result;
    result.per_page = std::clamp(per_page, 1, kMaxPerPage);
    result.page = std::max(1, page);
    std::lock_guard lock(mutex_);
    if (!connection_.ok()) return result;
    const std::string pattern = contains_pattern(query);
    const std::string where = std::string(" WHERE ") + kPlain + " AND " + kMatches;

    Statement count = connection_.prepare("SELECT count(*) FROM Recordings1" + where);
    count.bind_text(1, pattern);
    if (count.step() == Statement::Step::Row) result.total = count.column_int64(0);

    Statement rows =
        connection_.prepare("SELECT RecID, Title, Artist, C40, D40, T40 FROM Recordings1" + where +
                            " ORDER BY Title, RecID LIMIT ?2 OFFSET ?3");
    rows.bind_text(1, pattern);
    rows.bind_int64(2, result.per_page);
    rows.bind_int64(3, static_cast<long long>(result.page - 1) * result.per_page);
    while (rows.step() == Statement::Step::Row) {
        result.rows.push_back({static_cast<long>(rows.column_int64(0)), rows.column_text(1),
                               rows.column_text(2), chart_of(rows)});
    }
    return result;
}

bool WebLibrary::has_title(const std::string& title) {
    std::lock_guard lock(mutex_);
    if (!connection_.ok()) return false;
    Statement find =
        connection_.prepare("SELECT 1 FROM Recordings1 WHERE trim(Title) = trim(?1) LIMIT 1");
    find.bind_text(1, title);
    return find.step() == Statement::Step::Row;
}

std::pair<std::string, std::string> WebLibrary::names_of(long recid) {
    std::lock_guard lock(mutex_);
    if (!connection_.ok()) return {};
    Statement find = connection_.prepare("SELECT Title, Artist FROM Recordings1 WHERE RecID = ?1");
    find.bind_int64(1, recid);
    if (find.step() != Statement::Step::Row) return {};
    return {find.column_text(0), find.column_text(1)};
}

}  // namespace tavora
