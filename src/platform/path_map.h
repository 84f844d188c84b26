#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavora {

// The install folder, which the stored form calls c:\tavora: the --home
// option if given, else $TAVORA_HOME, else ~/tavora.
std::filesystem::path ResolveInstallFolder(const std::optional<std::string>& home_option);

// Stored paths keep the DOS form the rules read as text ("c:\tavora\qx1.mdb",
// "d:\music\Song.mp3"). This maps them to this machine's paths and back
// through a drive table: c:\tavora is the install folder, c: its parent, z:
// the root, and further letters whatever SetDrive gives them.
class PathMap {
  public:
    enum class Status {
        Mapped,       // a DOS path, now native
        PassThrough,  // not a drive path (http..., QX..., CD..., a plain name): untouched
        NoSuchDrive,  // a drive letter with no folder on this machine
    };
    struct Result {
        Status status = Status::PassThrough;
        std::string path;  // native when mapped, the text itself otherwise
        bool ok() const { return status != Status::NoSuchDrive; }
    };

    explicit PathMap(std::filesystem::path install_folder);

    const std::filesystem::path& install_folder() const { return install_; }
    // An empty folder removes the letter; the letter's case is ignored.
    void SetDrive(char letter, std::filesystem::path folder);
    std::optional<std::filesystem::path> DriveFolder(char letter) const;

    // Windows names ignored case, so when the exact native path doesn't
    // exist each missing part is matched without regard to case; a path that
    // matches nothing comes back as mapped.
    Result ToNative(std::string_view dos) const;
    // The DOS form under the longest mapped folder holding the path. A
    // relative path, or one outside every mapped folder, comes back as it is.
    std::string ToDos(const std::filesystem::path& native) const;

  private:
    struct Mount {
        std::string dos;  // "c:\tavora", "c:", "z:" ...: lower case, no trailing slash
        std::filesystem::path folder;
    };
    const Mount* FindDos(std::string_view dos, std::size_t& rest) const;

    std::filesystem::path install_;
    std::vector<Mount> mounts_;  // the install folder first, then one per letter
};

}  // namespace tavora
