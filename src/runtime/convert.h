#pragma once

#include <optional>
#include <string>
#include <string_view>

// Conversions between numbers and text with the rules the station's data
// was written under.

namespace tavora {

// A number as a field shows it: up to 15 significant digits, no trailing
// zeros, exponent form ("1E+15", "1E-05") outside that range.
std::string number_text(double number);

// The number's text with a leading blank when it isn't negative. Like the
// platform's Str, a fraction below one loses its leading zero: " .5", "-.5".
std::string Str(double number);

// The leading number of a text: blanks, tabs and line ends are skipped
// anywhere, reading stops at the first character that can't continue a
// number, and a text with no number gives 0. "&H" and "&O" prefixes read
// hexadecimal and octal; up to four digits are a 16-bit value, so "&HFFFF"
// is -1.
double Val(std::string_view text);

// The whole text, blanks around it aside, reads as one decimal number.
bool IsNumeric(std::string_view text);

// A boolean as input reads it: "True" or "False" in any case (also in the
// "#TRUE#" form of written data) or a number, non-zero being True. Blanks
// around it are ignored; anything else is no boolean.
std::optional<bool> parse_boolean(std::string_view text);

// Round half to even, then clamp to the 16-bit (CInt) or 32-bit (CLng)
// range instead of failing; NaN gives 0.
int CInt(double number);
int CLng(double number);

// Int rounds toward minus infinity, Fix toward zero.
double Int(double number);
double Fix(double number);

}  // namespace tavora
