#include "broadcast/profile.h"

#include <charconv>
#include <fstream>
#include <sstream>

namespace tavora {

namespace {

constexpr const char* kCodecs[] = {"wma", "mp3", "vorbis", "opus"};

bool known_codec(const std::string& codec) {
    for (const char* known : kCodecs)
        if (codec == known) return true;
    return false;
}

std::string trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool to_int(const std::string& text, int& out) {
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, out);
    return ec == std::errc() && ptr == end;
}

// One `key = value` into the profile; empty, or what is wrong with it.
std::string take(Profile& p, const std::string& key, const std::string& value) {
    auto number = [&](int& field, int low, int high) -> std::string {
        if (!to_int(value, field) || field < low || field > high)
            return key + " must be a number from " + std::to_string(low) + " to " +
                   std::to_string(high);
        return {};
    };
    auto target = [&p]() -> StreamTarget& {
        if (!p.stream) p.stream.emplace();
        return *p.stream;
    };
    if (key == "description")
        p.description = value;
    else if (key == "codec") {
        if (!known_codec(value)) return "unknown codec \"" + value + "\"";
        p.codec = value;
    } else if (key == "bitrate")
        return number(p.bitrate_kbps, 6, 512);
    else if (key == "sample_rate")
        return number(p.sample_rate, 8000, 48000);
    else if (key == "channels")
        return number(p.channels, 1, 2);
    else if (key == "file")
        p.file = value;
    else if (key == "icecast_host")
        target().host = value;
    else if (key == "icecast_port")
        return number(target().port, 1, 65535);
    else if (key == "icecast_mount") {
        if (value.empty() || value[0] != '/') return "icecast_mount must start with /";
        target().mount = value;
    } else if (key == "icecast_user")
        target().user = value;
    else if (key == "icecast_password")
        target().password = value;
    else if (key == "icecast_name")
        target().name = value;
    else if (key == "icecast_genre")
        target().genre = value;
    else if (key == "icecast_public") {
        if (value != "yes" && value != "no") return "icecast_public must be yes or no";
        target().is_public = value == "yes";
    } else
        return "unknown key \"" + key + "\"";
    return {};
}

}  // namespace

ProfileRead ParseProfile(const std::string& text) {
    Profile profile;
    std::istringstream lines(text);
    std::string line;
    int number = 0;
    bool any = false;
    while (std::getline(lines, line)) {
        ++number;
        line = trim(line);
        if (line.empty() || line[0] == '#') continue;
        const auto eq = line.find('=');
        if (eq == std::string::npos)
            return {std::nullopt, "line " + std::to_string(number) + ": no \"=\""};
        const std::string error =
            take(profile, trim(line.substr(0, eq)), trim(line.substr(eq + 1)));
        if (!error.empty()) return {std::nullopt, "line " + std::to_string(number) + ": " + error};
        any = true;
    }
    if (!any) return {std::nullopt, "the profile is empty"};
    if (profile.codec.empty()) return {std::nullopt, "the profile names no codec"};
    if (profile.file.empty()) return {std::nullopt, "the profile names no file"};
    if (profile.stream && profile.stream->host.empty())
        return {std::nullopt, "icecast settings without icecast_host"};
    if (profile.stream && profile.codec == "wma")
        return {std::nullopt, "an Icecast stream takes mp3, vorbis or opus"};
    return {profile, {}};
}

ProfileRead ReadProfile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) return {std::nullopt, "cannot read " + file.string()};
    std::ostringstream text;
    text << in.rdbuf();
    return ParseProfile(text.str());
}

std::string ProfileText(const Profile& p) {
    std::ostringstream out;
    out << "# Tavora recorder profile: one setting a line, \"#\" starts a comment.\n"
        << "# codec: wma (in ASF), mp3, vorbis or opus (in Ogg); bitrate in kb/s.\n"
        << "description = " << p.description << "\n"
        << "codec = " << p.codec << "\n"
        << "bitrate = " << p.bitrate_kbps << "\n"
        << "sample_rate = " << p.sample_rate << "\n"
        << "channels = " << p.channels << "\n"
        << "file = " << p.file << "\n";
    if (p.stream) {
        const StreamTarget& s = *p.stream;
        out << "icecast_host = " << s.host << "\n"
            << "icecast_port = " << s.port << "\n"
            << "icecast_mount = " << s.mount << "\n"
            << "icecast_user = " << s.user << "\n"
            << "icecast_password = " << s.password << "\n"
            << "icecast_name = " << s.name << "\n"
            << "icecast_genre = " << s.genre << "\n"
            << "icecast_public = " << (s.is_public ? "yes" : "no") << "\n";
    } else {
        out << "# To stream the recording too (mp3, vorbis or opus), fill in and uncomment:\n"
            << "# icecast_host = 127.0.0.1\n# icecast_port = 8000\n# icecast_mount = /tavora\n"
            << "# icecast_user = source\n# icecast_password = hackme\n"
            << "# icecast_name = Tavora\n# icecast_genre = Various\n# icecast_public = no\n";
    }
    return out.str();
}

std::vector<std::pair<std::string, Profile>> StandardProfiles() {
    struct Quality {
        const char* key;
        const char* temp;
        const char* words;
        int wma_kbps, mp3_kbps, rate, channels;
    };
    // Rates that fit the lines the buttons are named after, with room for overhead.
    static constexpr Quality kQualities[] = {
        {"288f", "c:\\qx288f.asf", "28.8K modem", 24, 24, 22050, 1},
        {"56kf", "c:\\qx56kf.asf", "56K modem", 32, 40, 22050, 2},
        {"isdf", "c:\\qxisdf.asf", "ISDN", 64, 64, 44100, 2},
        {"lanf", "c:\\qxlan.asf", "LAN", 128, 128, 44100, 2},
        {"cdqf", "c:\\qxcdqf.asf", "CD quality", 160, 192, 44100, 2},
    };
    std::vector<std::pair<std::string, Profile>> all;
    for (const Quality& q : kQualities) {
        all.push_back({std::string("live") + q.key + ".asd",
                       Profile{std::string(q.words) + ", Windows Media Audio", "wma", q.wma_kbps,
                               q.rate, q.channels, q.temp, std::nullopt}});
        all.push_back({std::string("mp3") + q.key + ".asd",
                       Profile{std::string(q.words) + ", MP3", "mp3", q.mp3_kbps, q.rate,
                               q.channels, q.temp, std::nullopt}});
    }
    all.push_back({"ogglanf.asd", Profile{"LAN, Ogg Vorbis", "vorbis", 128, 44100, 2,
                                          "c:\\tavora\\live.ogg", std::nullopt}});
    all.push_back({"opuslanf.asd", Profile{"LAN, Opus", "opus", 96, 48000, 2,
                                           "c:\\tavora\\live.opus", std::nullopt}});
    return all;
}

std::string WriteProfile(const std::filesystem::path& file, const Profile& profile) {
    std::ofstream out(file, std::ios::binary);
    out << ProfileText(profile);
    out.close();
    return out ? std::string() : "cannot write " + file.string();
}

}  // namespace tavora
