#pragma once

#include <cstdint>
#include <string_view>

namespace tavora {

// Where a text's first character stands in the case-blind text comparison
// the letter buttons use: blanks, then punctuation and symbols, then digits,
// then letters, an accented Latin letter just after its plain one. Equal
// numbers mean the same character but for case; 0 is the empty text.
std::uint32_t first_char_order(std::string_view text);

}  // namespace tavora
