#pragma once

#include <functional>
#include <string>
#include <vector>

#include "store/library.h"

namespace tavora {

struct StoredQuery {
    std::string name;
    std::string sql;
};

// The catalogue of named queries in its fixed order. Only CalcReq depends
// on the day: before the fifth of the month it puts all-time requests
// first, from the fifth on this month's.
std::vector<StoredQuery> stored_queries(double now);

// Writes every query of the catalogue into the library, creating a missing
// one and overwriting an existing one, in one transaction: a query that
// can't be written is passed over, and a library that can't be written at
// all (read-only, locked) keeps what it has. Returns why not everything was
// written, empty when it was. reset_cd runs between MaxPlys and CDNow,
// where the CD book-keeping is reset, whatever happens to the writes.
std::string Make_Qrys(Library& library, double now, const std::function<void()>& reset_cd);

}  // namespace tavora
