#pragma once

#include <functional>
#include <string>
#include <vector>

#include "catalogue/frm_tavora_db.h"

namespace tavora {

struct BulkAddOptions {
    bool tags = false;  // titles and artists from tags where the name has no " - "
    int progress_every = 250;
    std::function<void(const std::string& line)> say;
};

struct BulkAddReport {
    long added = 0;
    long duplicates = 0;
    long passed_over = 0;  // not media, unreadable, or a link to a folder
};

// Adds files and folders (native paths, folders walked recursively) to the
// library by the wizard's rules in all-mode: its media types, its duplicate
// test and its defaults, which `db.Wizard` must hold. Links to folders are
// not followed, so a loop can't hold the walk. Each row is written whole on
// its own, so a stop part-way keeps every row added so far.
BulkAddReport Bulk_Add(frmTavoraDb& db, const PathMap& paths,
                       const std::vector<std::string>& native_paths, const BulkAddOptions& options);

}  // namespace tavora
