#include "internet/web_settings.h"

#include <arpa/inet.h>

#include <fstream>

#include "internet/web_text.h"

namespace tavora {

namespace {

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::optional<bool> switch_value(const std::string& text) {
    if (text == "true" || text == "on" || text == "yes" || text == "1") return true;
    if (text == "false" || text == "off" || text == "no" || text == "0") return false;
    return std::nullopt;
}

bool is_ipv4(const std::string& text) {
    in_addr parsed{};
    return inet_pton(AF_INET, text.c_str(), &parsed) == 1;
}

// False when the key is known and the value doesn't fit it.
bool take(WebSettings& s, const std::string& key, const std::string& value) {
    if (key == "enabled") {
        const auto on = switch_value(value);
        if (on) s.enabled = *on;
        return on.has_value();
    }
    if (key == "address") {
        if (!is_ipv4(value)) return false;
        s.address = value;
        return true;
    }
    if (key == "port" || key == "requests_per_hour") {
        const auto number = whole_number(value, key == "port" ? 1 : 0, 65535);
        if (number) (key == "port" ? s.port : s.requests_per_hour) = *number;
        return number.has_value();
    }
    if (key == "token") {
        s.token = value;
        return true;
    }
    return false;
}

}  // namespace

WebSettingsFile read_web_settings(const std::filesystem::path& file) {
    WebSettingsFile result;
    std::ifstream in(file);
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        line = trimmed(line);
        if (line.empty() || line[0] == '#' || line[0] == ';') continue;
        const auto equals = line.find('=');
        const std::string key =
            equals == std::string::npos ? line : trimmed(line.substr(0, equals));
        const std::string value =
            equals == std::string::npos ? "" : trimmed(line.substr(equals + 1));
        if (equals == std::string::npos || !take(result.settings, key, value)) {
            result.problems += file.filename().string() + " line " + std::to_string(number) +
                               ": \"" + line + "\" is passed over\n";
        }
    }
    return result;
}

bool write_default_web_settings(const std::filesystem::path& file) {
    std::error_code error;
    if (std::filesystem::exists(file, error)) return false;
    std::ofstream out(file);
    const WebSettings d;
    out << "# The station's own web page and API (request page, now playing, control).\n"
           "# enabled=true starts it with the station; --web [ADDR:]PORT does too.\n"
        << "enabled=false\n"
        << "address=" << d.address << "\n"
        << "port=" << d.port << "\n"
        << "# The control API (run, skip, break, pause) answers only to this token;\n"
           "# empty keeps it off.\n"
        << "token=\n"
        << "# Titles one listener address may request in an hour.\n"
        << "requests_per_hour=" << d.requests_per_hour << "\n";
    return static_cast<bool>(out);
}

std::optional<WebAddress> parse_web_address(const std::string& text) {
    WebAddress result{"127.0.0.1", 0};
    std::string port = text;
    if (const auto colon = text.rfind(':'); colon != std::string::npos) {
        result.address = text.substr(0, colon);
        port = text.substr(colon + 1);
        if (!is_ipv4(result.address)) return std::nullopt;
    }
    const auto number = whole_number(port, 1, 65535);
    if (!number) return std::nullopt;
    result.port = *number;
    return result;
}

}  // namespace tavora
