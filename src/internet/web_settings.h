#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tavora {

// The built-in web page and API. Off unless the settings file or the
// command line turns it on; without a token the control API refuses all.
struct WebSettings {
    bool enabled = false;
    std::string address = "127.0.0.1";
    int port = 8080;
    std::string token;
    int requests_per_hour = 3;  // per listener address
};

// web.ini in the install folder: "key=value" lines, "#" or ";" starts a
// comment. A missing file gives the defaults; a value that can't be read
// keeps its default and is named in `problems`.
struct WebSettingsFile {
    WebSettings settings;
    std::string problems;
};
WebSettingsFile read_web_settings(const std::filesystem::path& file);

// Writes a commented file with the defaults, so the operator finds the
// switches; never overwrites one that is there.
bool write_default_web_settings(const std::filesystem::path& file);

// "[ADDR:]PORT" as --web takes it: "8080", "127.0.0.1:8080", "0.0.0.0:80".
// Empty when the text is no such thing.
struct WebAddress {
    std::string address;
    int port = 0;
};
std::optional<WebAddress> parse_web_address(const std::string& text);

}  // namespace tavora
