#pragma once

#include <filesystem>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "store/connection.h"

namespace tavora {

// The library as the web sees it, through a connection of its own: the web
// thread never shares the rule thread's handles. Only plain records are
// listed (no snipits, promos or chart lead-ins). Every value from a request
// is bound; nothing from the web is ever SQL text. Safe from any thread.
class WebLibrary {
  public:
    explicit WebLibrary(const std::filesystem::path& library);

    bool ok() const { return connection_.ok(); }

    struct Row {
        long recid = 0;
        std::string title;
        std::string artist;
        std::string chart;  // "Top 40 #3", or empty
    };
    struct Page {
        long total = 0;  // rows that match, on all pages
        int page = 1;
        int per_page = 0;
        std::vector<Row> rows;
    };
    // Rows whose title or artist holds `query` (case does not matter), in
    // title order; `page` counts from 1.
    Page search(const std::string& query, int page, int per_page);

    // True when a record has exactly this title, blanks at either end aside:
    // the match the request window will make.
    bool has_title(const std::string& title);
    // Title and artist of a record, or two empty texts.
    std::pair<std::string, std::string> names_of(long recid);

    static constexpr int kMaxPerPage = 100;

  private:
    std::mutex mutex_;
    Connection connection_;
};

// The text of a Like pattern that finds `text` anywhere, its own % and _
// escaped with a backslash.
std::string contains_pattern(const std::string& text);

}  // namespace tavora
