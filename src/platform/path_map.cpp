#include "platform/path_map.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <system_error>

namespace tavora {

namespace fs = std::filesystem;

namespace {

char Lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

std::string Lower(std::string_view s) {
    std::string out(s);
    std::transform(out.begin(), out.end(), out.begin(), [](char c) { return Lower(c); });
    return out;
}

bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}

bool IsDrivePath(std::string_view s) {
    return s.size() >= 2 && std::isalpha(static_cast<unsigned char>(s[0])) && s[1] == ':';
}

// Absolute, without "." or ".." and without a trailing separator.
fs::path Clean(const fs::path& p) {
    std::error_code ec;
    fs::path out = fs::absolute(p, ec);
    if (ec) out = p;
    out = out.lexically_normal();
    if (!out.has_filename() && out.has_relative_path()) out = out.parent_path();
    return out;
}

std::vector<std::string> SplitParts(std::string_view s) {
    std::vector<std::string> parts;
    std::size_t i = 0;
    while (i < s.size()) {
        while (i < s.size() && IsSeparator(s[i]))
            ++i;
        const std::size_t start = i;
        while (i < s.size() && !IsSeparator(s[i]))
            ++i;
        if (i > start) parts.emplace_back(s.substr(start, i - start));
    }
    return parts;
}

// Walks down from `base`, taking each part as spelled if it exists and else
// the first entry that matches it ignoring case.
std::optional<fs::path> FindIgnoringCase(const fs::path& base,
                                         const std::vector<std::string>& parts) {
    fs::path cur = base;
    for (const auto& part : parts) {
        std::error_code ec;
        if (fs::exists(cur / part, ec)) {
            cur /= part;
            continue;
        }
        const std::string want = Lower(part);
        std::optional<fs::path> found;
        for (fs::directory_iterator it(cur, ec), end; !ec && it != end; it.increment(ec)) {
            if (Lower(it->path().filename().string()) == want) {
                found = it->path();
                break;
            }
        }
        if (!found) return std::nullopt;
        cur = *found;
    }
    return cur;
}

}  // namespace

fs::path ResolveInstallFolder(const std::optional<std::string>& home_option) {
    if (home_option && !home_option->empty()) return Clean(*home_option);
    if (const char* env = std::getenv("TAVORA_HOME"); env && *env) return Clean(env);
    const char* home = std::getenv("HOME");
    if (!home || !*home) {
        const passwd* pw = getpwuid(getuid());
        home = pw && pw->pw_dir ? pw->pw_dir : "/";
    }
    return Clean(fs::path(home) / "tavora");
}

PathMap::PathMap(fs::path install_folder) : install_(Clean(install_folder)) {
    mounts_.push_back({"c:\\tavora", install_});
    SetDrive('c', install_.parent_path());
    SetDrive('z', "/");
}

void PathMap::SetDrive(char letter, fs::path folder) {
    const std::string dos{Lower(letter), ':'};
    // Entry 0 is the install folder; the letters follow in order.
    auto it = std::find_if(mounts_.begin() + 1, mounts_.end(),
                           [&](const Mount& m) { return m.dos >= dos; });
    if (it != mounts_.end() && it->dos == dos) it = mounts_.erase(it);
    if (!folder.empty()) mounts_.insert(it, {dos, Clean(folder)});
}

std::optional<fs::path> PathMap::DriveFolder(char letter) const {
    const std::string dos{Lower(letter), ':'};
    for (std::size_t i = 1; i < mounts_.size(); ++i) {
        if (mounts_[i].dos == dos) return mounts_[i].folder;
    }
    return std::nullopt;
}

const PathMap::Mount* PathMap::FindDos(std::string_view dos, std::size_t& rest) const {
    const std::string lower = Lower(dos);
    for (const Mount& m : mounts_) {
        if (lower.size() < m.dos.size()) continue;
        bool same = true;
        for (std::size_t i = 0; i < m.dos.size() && same; ++i) {
            same = lower[i] == m.dos[i] || (IsSeparator(lower[i]) && IsSeparator(m.dos[i]));
        }
        // The install folder matches only as a whole part: not c:\tavora2.
        const bool whole =
            lower.size() == m.dos.size() || m.dos.size() == 2 || IsSeparator(lower[m.dos.size()]);
        if (same && whole) {
            rest = m.dos.size();
            return &m;
        }
    }
    return nullptr;
}

PathMap::Result PathMap::ToNative(std::string_view dos) const {
    if (!IsDrivePath(dos)) return {Status::PassThrough, std::string(dos)};
    std::size_t rest = 0;
    const Mount* mount = FindDos(dos, rest);
    if (!mount) return {Status::NoSuchDrive, std::string(dos)};

    const auto parts = SplitParts(dos.substr(rest));
    fs::path native = mount->folder;
    for (const auto& part : parts)
        native /= part;
    std::error_code ec;
    if (!fs::exists(native, ec)) {
        if (auto found = FindIgnoringCase(mount->folder, parts)) native = *found;
    }
    return {Status::Mapped, native.string()};
}

std::string PathMap::ToDos(const fs::path& native) const {
    if (!native.is_absolute()) return native.string();
    const fs::path path = native.lexically_normal();

    const Mount* best = nullptr;
    std::ptrdiff_t best_depth = -1;
    fs::path::iterator best_rest;
    for (const Mount& m : mounts_) {
        auto [f, p] = std::mismatch(m.folder.begin(), m.folder.end(), path.begin(), path.end());
        const auto depth = std::distance(m.folder.begin(), m.folder.end());
        if (f == m.folder.end() && depth > best_depth) {
            best = &m;
            best_depth = depth;
            best_rest = p;
        }
    }
    if (!best) return native.string();

    std::string dos = best->dos;
    for (auto it = best_rest; it != path.end(); ++it) {
        if (!it->empty()) dos += "\\" + it->string();
    }
    if (dos.size() == 2) dos += "\\";
    return dos;
}

}  // namespace tavora
