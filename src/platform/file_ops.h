#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// File calls the rules make, over native paths. Each reports success or
// failure and never throws: the rules pass over a failed call and look at the
// result afterwards.
namespace tavora::files {

namespace fs = std::filesystem;

// A file, not a folder, as the rules' existence checks mean it.
bool Exists(const fs::path& path);
bool FolderExists(const fs::path& path);
std::optional<std::uintmax_t> Length(const fs::path& path);
// Overwrites the target, as a file copy does.
bool Copy(const fs::path& from, const fs::path& to);
bool Kill(const fs::path& path);
// Fails when the target already exists, rather than replacing it.
bool Name(const fs::path& from, const fs::path& to);
// Fails when the folder already exists or its parent doesn't.
bool MakeDir(const fs::path& path);
// Names of the files in `folder` matching a DOS wildcard ("*.mp3", "qx?.mdb")
// without regard to case, sorted.
std::vector<std::string> List(const fs::path& folder, std::string_view pattern);

bool WildcardMatch(std::string_view pattern, std::string_view name);

}  // namespace tavora::files
