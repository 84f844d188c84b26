#pragma once

#include <filesystem>

namespace tavora {

// Writes a clean copy of the library at `from` into `to`, which must not
// exist. A file that is missing, isn't SQLite, lacks the library's tables or
// fails its integrity check gives no copy at all: the absence of `to` is the
// failure, and `from` is never written.
bool compact_library(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace tavora
