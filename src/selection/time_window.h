#pragma once

#include "runtime/value.h"

namespace tavora {

// A window from start to end, strict at both instants; start after end runs
// across midnight, start equal to end all day. A Null bound only matches an
// equal Null.
inline bool in_window(const Value& start, const Value& end, const Value& t) {
    if (end > start && t > start && t < end) return true;
    if (start > end && (t < end || t > start)) return true;
    return start == end;
}

}  // namespace tavora
