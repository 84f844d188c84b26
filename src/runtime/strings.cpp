#include "runtime/strings.h"

namespace tavora {

namespace {

bool is_continuation(unsigned char c) {
    return (c & 0xC0) == 0x80;
}

// Length in bytes of the character that starts at byte i: a lead byte and the
// continuation bytes it announces, or one byte when the sequence is broken.
std::size_t char_bytes(std::string_view text, std::size_t i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    std::size_t want = lead >= 0xF0 && lead < 0xF8   ? 4
                       : lead >= 0xE0 && lead < 0xF0 ? 3
                       : lead >= 0xC0 && lead < 0xE0 ? 2
                                                     : 1;
    if (i + want > text.size()) return 1;
    for (std::size_t k = 1; k < want; ++k) {
        if (!is_continuation(static_cast<unsigned char>(text[i + k]))) return 1;
    }
    return want;
}

// Byte offset of character number index (0-based); text.size() past the end.
std::size_t byte_offset(std::string_view text, std::size_t index) {
    std::size_t i = 0;
    for (; i < text.size() && index > 0; --index)
        i += char_bytes(text, i);
    return i;
}

char fold(char c, TextCompare compare) {
    if (compare == TextCompare::Text && c >= 'A' && c <= 'Z') return static_cast<char>(c + 32);
    return c;
}

bool matches_at(std::string_view text, std::size_t at, std::string_view find, TextCompare compare) {
    for (std::size_t k = 0; k < find.size(); ++k) {
        if (fold(text[at + k], compare) != fold(find[k], compare)) return false;
    }
    return true;
}

std::string map_ascii(std::string_view text, char from, char to, int shift) {
    std::string out(text);
    for (char& c : out) {
        if (c >= from && c <= to) c = static_cast<char>(c + shift);
    }
    return out;
}

}  // namespace

std::size_t Len(std::string_view text) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < text.size(); i += char_bytes(text, i))
        ++n;
    return n;
}

std::string Left(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, byte_offset(text, count)));
}

std::string Right(std::string_view text, std::size_t count) {
    const std::size_t length = Len(text);
    if (count >= length) return std::string(text);
    return std::string(text.substr(byte_offset(text, length - count)));
}

std::string Mid(std::string_view text, long long start) {
    const std::size_t from = byte_offset(text, start > 1 ? static_cast<std::size_t>(start - 1) : 0);
    return std::string(text.substr(from));
}

std::string Mid(std::string_view text, long long start, std::size_t count) {
    return Left(Mid(text, start), count);
}

std::size_t InStr(std::string_view text, std::string_view find, TextCompare compare) {
    return InStr(1, text, find, compare);
}

std::size_t InStr(std::size_t start, std::string_view text, std::string_view find,
                  TextCompare compare) {
    if (start < 1) start = 1;
    std::size_t position = 1;
    std::size_t i = 0;
    for (; position < start && i < text.size(); ++position)
        i += char_bytes(text, i);
    if (position < start) return 0;
    if (find.empty()) return start;
    for (; i + find.size() <= text.size(); ++position) {
        if (matches_at(text, i, find, compare)) return position;
        i += char_bytes(text, i);
    }
    return 0;
}

std::string LTrim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string() : std::string(text.substr(first));
}

std::string RTrim(std::string_view text) {
    const std::size_t last = text.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
}

std::string Trim(std::string_view text) {
    return LTrim(RTrim(text));
}

std::string LCase(std::string_view text) {
    return map_ascii(text, 'A', 'Z', 32);
}

std::string UCase(std::string_view text) {
    return map_ascii(text, 'a', 'z', -32);
}

}  // namespace tavora
