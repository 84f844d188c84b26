#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavora {

// An Icecast server the encoder feeds as a source.
struct StreamTarget {
    std::string host;
    int port = 8000;
    std::string mount = "/tavora";
    std::string user = "source";
    std::string password;
    std::string name;
    std::string genre;
    bool is_public = false;
};

// One encoder profile, the `.asd` file: a text of `key = value` lines that a person
// can edit; `#` starts a comment. `file` is where the recording goes, in the stored
// form ("c:\qxlan.asf"); the `icecast_*` keys, when `icecast_host` is given, add a
// stream.
struct Profile {
    std::string description;
    std::string codec;  // wma, mp3, vorbis, opus
    int bitrate_kbps = 128;
    int sample_rate = 44100;
    int channels = 2;
    std::string file;
    std::optional<StreamTarget> stream;
};

struct ProfileRead {
    std::optional<Profile> profile;
    std::string error;  // why there is none: a missing file, a bad line
};

ProfileRead ParseProfile(const std::string& text);
ProfileRead ReadProfile(const std::filesystem::path& file);
std::string ProfileText(const Profile& profile);

// The profiles of the recorder's buttons and two more for its Custom button, by
// file name, as the install writes them.
std::vector<std::pair<std::string, Profile>> StandardProfiles();
// Empty, or why the file could not be written.
std::string WriteProfile(const std::filesystem::path& file, const Profile& profile);

}  // namespace tavora
