#include "internet/web_text.h"

#include <charconv>
#include <cstdint>
#include <cstdio>

namespace tavora {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Length of the valid UTF-8 sequence at `at`, or 0 when it is not one
// (overlong forms, surrogates and values past U+10FFFF are not).
std::size_t sequence_length(std::string_view s, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) return 1;
    std::size_t length = 0;
    std::uint32_t low = 0;
    std::uint32_t code = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2, low = 0x80, code = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3, low = 0x800, code = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4, low = 0x10000, code = lead & 0x07;
    } else {
        return 0;
    }
    if (at + length > s.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return 0;
        code = (code << 6) | (byte(at + i) & 0x3F);
    }
    if (code < low || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
    return length;
}

}  // namespace

std::string clean_web_text(std::string_view raw, std::size_t max_chars) {
    std::string out;
    std::size_t chars = 0;
    for (std::size_t at = 0; at < raw.size() && chars < max_chars;) {
        const std::size_t length = sequence_length(raw, at);
        if (length == 0) {
            out += kReplacement;
            ++at;
        } else if (length == 1) {
            const unsigned char c = static_cast<unsigned char>(raw[at]);
            out += (c < 0x20 || c == 0x7F) ? ' ' : static_cast<char>(c);
            ++at;
        } else {
            out.append(raw.substr(at, length));
            at += length;
        }
        ++chars;
    }
    const auto first = out.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return out.substr(first, out.find_last_not_of(' ') - first + 1);
}

std::optional<int> whole_number(std::string_view text, int low, int high) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < low || value > high)
        return std::nullopt;
    return value;
}

std::string json_escape(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 8);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char ch = text[at];
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c >= 0x80) {
            // A library title may hold bytes of another code page.
            const std::size_t length = sequence_length(text, at);
            if (length == 0) {
                out += kReplacement;
            } else {
                out.append(text.substr(at, length));
                at += length - 1;
            }
            continue;
        }
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            case '<':  // keeps "</script>" inert where JSON lands in a page
                out += "\\u003c";
                break;
            default:
                if (c < 0x20) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
                    out += escaped;
                } else {
                    out += ch;
                }
        }
    }
    return out;
}

std::string json_string(std::string_view text) {
    return "\"" + json_escape(text) + "\"";
}

}  // namespace tavora
