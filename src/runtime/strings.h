#pragma once

#include <string>
#include <string_view>

// Text helpers that count in characters, from 1, as the station's rules do.
// Texts are UTF-8; a character is one code point (a stray byte that is not
// valid UTF-8 counts as one character). Case mapping covers ASCII letters.

namespace tavora {

// Number of characters.
std::size_t Len(std::string_view text);

// The first / last count characters; the whole text when it is shorter.
std::string Left(std::string_view text, std::size_t count);
std::string Right(std::string_view text, std::size_t count);
// From character start (1-based; below 1 is taken as 1) to the end, or count
// characters of it. Empty when start is past the end.
std::string Mid(std::string_view text, long long start);
std::string Mid(std::string_view text, long long start, std::size_t count);

enum class TextCompare { Binary, Text };  // Text: ASCII case ignored

// Position (1-based, in characters) of the first find at or after character
// start, 0 when there is none. An empty find gives start, or 0 when start is
// past the end.
std::size_t InStr(std::string_view text, std::string_view find,
                  TextCompare compare = TextCompare::Binary);
std::size_t InStr(std::size_t start, std::string_view text, std::string_view find,
                  TextCompare compare = TextCompare::Binary);

// Blanks (spaces only, not tabs) removed at either end.
std::string Trim(std::string_view text);
std::string LTrim(std::string_view text);
std::string RTrim(std::string_view text);

std::string LCase(std::string_view text);
std::string UCase(std::string_view text);

}  // namespace tavora
