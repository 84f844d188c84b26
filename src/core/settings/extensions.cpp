#include "core/settings/extensions.h"

#include <cstdlib>
#include <fstream>
#include <functional>
#include <optional>
#include <sstream>

#include "runtime/strings.h"

namespace tavora {

namespace {

std::optional<bool> switch_in(const std::string& text) {
    if (text == "1" || text == "on" || text == "On") return true;
    if (text == "0" || text == "off" || text == "Off") return false;
    return {};
}

// One line of the file: its name, how it reads, how it writes.
struct Entry {
    const char* name;
    std::function<bool(Extensions&, const std::string&)> read;
    std::function<std::string(const Extensions&)> write;
};

Entry flag(const char* name, bool Extensions::*member) {
    return {name,
            [member](Extensions& e, const std::string& text) {
                const auto on = switch_in(text);
                if (on) e.*member = *on;
                return on.has_value();
            },
            [member](const Extensions& e) { return std::string(e.*member ? "1" : "0"); }};
}

// A number within [low, high]; anything else is no value for it.
Entry number(const char* name, double Extensions::*member, double low, double high) {
    return {name,
            [member, low, high](Extensions& e, const std::string& text) {
                char* end = nullptr;
                const double value = std::strtod(text.c_str(), &end);
                if (text.empty() || *end != '\0' || !(value >= low && value <= high)) return false;
                e.*member = value;
                return true;
            },
            [member](const Extensions& e) {
                std::ostringstream out;
                out << e.*member;
                return out.str();
            }};
}

Entry text(const char* name, std::string Extensions::*member) {
    return {name,
            [member](Extensions& e, const std::string& value) {
                e.*member = value;
                return true;
            },
            [member](const Extensions& e) { return e.*member; }};
}

const std::vector<Entry>& entries() {
    static const std::vector<Entry> all{
        flag("Seventh Player Songs Only", &Extensions::Bridge_Songs_Only),
        text("CD Image", &Extensions::CD_Image),
        text("CD Device", &Extensions::CD_Device),
        flag("Dead Air Watch", &Extensions::Dead_Air_Watch),
        number("Dead Air Level dBFS", &Extensions::Dead_Air_Level, -90, 0),
        number("Dead Air Hold Seconds", &Extensions::Dead_Air_Hold, 1, 600),
        text("Dead Air Fallback Folder", &Extensions::Dead_Air_Folder),
        flag("Loudness Normalise", &Extensions::Loudness_Normalise),
        number("Loudness Target LUFS", &Extensions::Loudness_Target, -40, -5),
        number("Loudness Ceiling dBTP", &Extensions::Loudness_Ceiling, -12, 0),
    };
    return all;
}

const Entry* entry_named(std::string_view name) {
    for (const Entry& entry : entries())
        if (name == entry.name) return &entry;
    return nullptr;
}

}  // namespace

bool set_extension(Extensions& settings, std::string_view name, const std::string& value) {
    const Entry* entry = entry_named(name);
    Extensions changed = settings;
    if (!entry || !entry->read(changed, value)) return false;
    settings = changed;
    return true;
}

std::string extension_text(const Extensions& settings, std::string_view name) {
    const Entry* entry = entry_named(name);
    return entry ? entry->write(settings) : std::string();
}

Extensions read_extensions(const std::filesystem::path& file,
                           std::vector<std::string>* complaints) {
    Extensions settings;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const auto equals = line.find('=');
        if (line.empty() || line[0] == '#' || equals == std::string::npos) continue;
        const std::string name = Trim(line.substr(0, equals));
        const std::string value = Trim(line.substr(equals + 1));
        for (const Entry& entry : entries()) {
            if (name != entry.name || entry.read(settings, value)) continue;
            if (complaints) {
                complaints->push_back(file.filename().string() + ": \"" + value +
                                      "\" is no value for " + name + "; it stays " +
                                      entry.write(settings));
            }
        }
    }
    return settings;
}

bool write_extensions(const Extensions& settings, const std::filesystem::path& file) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << "# What the station does beyond its rules; 0 turns a switch off.\r\n";
    for (const Entry& entry : entries())
        out << entry.name << '=' << entry.write(settings) << "\r\n";
    return static_cast<bool>(out.flush());
}

}  // namespace tavora
