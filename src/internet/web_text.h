#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tavora {

// Text from the web made safe to match: invalid UTF-8 becomes U+FFFD, line
// ends, tabs and other control characters become blanks (a CR or LF must
// never split a line of an exchange file), blanks at either end go, and the
// result is cut at `max_chars` characters, never inside one.
std::string clean_web_text(std::string_view raw, std::size_t max_chars = 255);

// A whole number from low to high written as digits and nothing else.
std::optional<int> whole_number(std::string_view text, int low, int high);

// The text inside a JSON string (without the quotes).
std::string json_escape(std::string_view text);
// "text" as a JSON string.
std::string json_string(std::string_view text);

}  // namespace tavora
