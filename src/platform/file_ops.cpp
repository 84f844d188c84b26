#include "platform/file_ops.h"

#include <algorithm>
#include <cctype>
#include <system_error>

namespace tavora::files {

bool Exists(const fs::path& path) {
    std::error_code ec;
    return fs::is_regular_file(path, ec);
}

bool FolderExists(const fs::path& path) {
    std::error_code ec;
    return fs::is_directory(path, ec);
}

std::optional<std::uintmax_t> Length(const fs::path& path) {
    std::error_code ec;
    const auto size = fs::file_size(path, ec);
    if (ec) return std::nullopt;
    return size;
}

bool Copy(const fs::path& from, const fs::path& to) {
    std::error_code ec;
    if (!Exists(from)) return false;
    return fs::copy_file(from, to, fs::copy_options::overwrite_existing, ec) && !ec;
}

bool Kill(const fs::path& path) {
    std::error_code ec;
    return Exists(path) && fs::remove(path, ec) && !ec;
}

bool Name(const fs::path& from, const fs::path& to) {
    std::error_code ec;
    if (!fs::exists(from, ec) || fs::exists(to, ec)) return false;
    fs::rename(from, to, ec);
    return !ec;
}

bool MakeDir(const fs::path& path) {
    std::error_code ec;
    return fs::create_directory(path, ec) && !ec;
}

bool WildcardMatch(std::string_view pattern, std::string_view name) {
    // As in DOS, a name without an extension still matches "*.*" and "x.*".
    if (pattern.size() >= 2 && pattern.substr(pattern.size() - 2) == ".*" &&
        name.find('.') == std::string_view::npos) {
        pattern.remove_suffix(2);
    }
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    };
    // Greedy match with one backtrack point: linear for the patterns used.
    std::size_t p = 0, n = 0, star = std::string_view::npos, mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || same(pattern[p], name[n]))) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

std::vector<std::string> List(const fs::path& folder, std::string_view pattern) {
    std::vector<std::string> names;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        std::error_code type_ec;
        if (!it->is_regular_file(type_ec)) continue;
        std::string name = it->path().filename().string();
        if (WildcardMatch(pattern, name)) names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace tavora::files
