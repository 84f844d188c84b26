#pragma once

#include <filesystem>

#include "core/services.h"
#include "core/station.h"

namespace tavora {

// `Rotate_Db`: at each start of a playing station, applies a waiting
// restore, compacts the library into qxbk.mdb, rotates qxlast, qxlast1 and
// qxlast2, replaces the library with the clean copy, and keeps the Sunday and
// Friday copies. Errors are passed over; the only failure is a compaction
// that produced no qxbk.mdb, which is reported, sets `Cmp_Fail` and leaves the
// library and every backup as they were. Returns false then.
bool Rotate_Db(Station& station, const Services& services);

}  // namespace tavora
