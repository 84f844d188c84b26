#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/connection.h"

namespace tavora {

// What a query looks at, as SQLite itself reports while preparing it: the
// names of the columns it reads, and whether it calls a function whose
// answer may change with no write at all (the clock, random numbers), in
// which case only running it again tells. Columns go by name alone, of any
// table, so a write can only ever match too many queries, never too few.
struct QueryReads {
    std::vector<std::string> columns;
    bool volatile_answer = false;
};

// Prepares the text and tells what it reads; text that doesn't prepare
// counts as changing with no write.
Statement prepare_noting_reads(Connection& connection, std::string_view sql, QueryReads& reads);

// The name under which a written column is matched against the columns a
// query reads.
std::string column_key(std::string_view column);

}  // namespace tavora
