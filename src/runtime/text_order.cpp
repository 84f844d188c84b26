#include "runtime/text_order.h"

namespace tavora {

namespace {

enum Group : std::uint32_t { kBlank = 1, kSymbol, kDigit, kLetter, kOther };

constexpr std::uint32_t order(Group group, std::uint32_t within) {
    return group << 24 | within;
}

// A letter and how far its accent sets it after the plain one.
constexpr std::uint32_t letter(char base, std::uint32_t accent) {
    return order(kLetter, static_cast<std::uint32_t>(base - 'A') << 8 | accent);
}

// The first code point of UTF-8 text; a byte that starts no valid sequence
// stands for itself.
std::uint32_t first_code_point(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::uint32_t lead = byte(0);
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length == 1 || text.size() < length) return lead;
    std::uint32_t point = lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return lead;
        point = point << 6 | (byte(i) & 0x3F);
    }
    return point;
}

// Base letters of U+00C0 to U+00DE, upper case; '*' is a symbol, '?' a
// letter of its own.
constexpr std::string_view kLatin1 = "AAAAAAACEEEEIIIIDNOOOOO*OUUUUY?S";

// Base letters of U+0100 to U+017F.
constexpr std::string_view kLatinA =
    "AAAAAACCCCCCCCDDDDEEEEEEEEEEGGGGGGGGHHHHIIIIIIIIIIIIJJKKKLLLLLLLLLLNNNNNNNNNOOOOOOOO"
    "RRRRRRSSSSSSSSTTTTTTUUUUUUUUUUUUWWYYYZZZZZZS";

std::uint32_t latin1_order(std::uint32_t point) {
    // The lower-case half mirrors the upper, but for the division sign and
    // y with diaeresis.
    if (point == 0xF7) return order(kSymbol, point);
    if (point == 0xFF) return letter('Y', 2);
    if (point == 0xDF) return letter('S', 1);
    if (point >= 0xE0) point -= 0x20;
    const char base = kLatin1[point - 0xC0];
    if (base == '*') return order(kSymbol, point);
    if (base == '?') return order(kOther, point);
    return letter(base, point - 0xC0 + 1);
}

std::uint32_t latin_a_order(std::uint32_t point) {
    // Upper and lower case come in pairs, upper first, but from L with
    // acute to N with caron and from Z with acute the pairs start one later.
    const bool shifted = (point >= 0x139 && point <= 0x148) || (point >= 0x179 && point <= 0x17E);
    const std::uint32_t pair = (point - 0x100 - (shifted ? 1 : 0)) / 2;
    return letter(kLatinA[point - 0x100], 0x20 + pair);
}

}  // namespace

std::uint32_t first_char_order(std::string_view text) {
    if (text.empty()) return 0;
    const std::uint32_t point = first_code_point(text);
    if (point <= ' ') return order(kBlank, point);
    if (point >= '0' && point <= '9') return order(kDigit, point);
    if (point >= 'a' && point <= 'z') return letter(static_cast<char>(point - 0x20), 0);
    if (point >= 'A' && point <= 'Z') return letter(static_cast<char>(point), 0);
    if (point < 0xC0) return order(kSymbol, point);
    if (point <= 0xFF) return latin1_order(point);
    if (point <= 0x17F) return latin_a_order(point);
    return order(kOther, point);
}

}  // namespace tavora
