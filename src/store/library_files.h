#pragma once

#include <filesystem>
#include <string>

namespace tavora {

// New files as an installer leaves them. Each refuses to touch an existing
// file and builds the new one under a temporary name first, so a failure
// never leaves a half-made library behind. The result is empty on success,
// else the reason.

// Every table of the library with its default rows: the "Always" schedule,
// the master categories with their weights, and the stored queries.
std::string create_library_file(const std::filesystem::path& path, double now);

// The settings row with working defaults and an empty drive table. The
// roll-over dates are the day of `now`, since a Null there would stop the
// roll-over for good.
std::string create_settings_file(const std::filesystem::path& path, double now);

}  // namespace tavora
