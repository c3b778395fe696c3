// Checked conversions between text, floating point and whole numbers. All rounding of the program
// goes through here: halves go to the even neighbour, out-of-range values give no result instead
// of undefined behaviour.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velt {

// Nearest whole number, halves to even; empty when the value is not finite or outside 32 bits.
std::optional<int32_t> RoundHalfEven(double value);

// The same for 16 bits.
std::optional<int16_t> RoundHalfEven16(double value);

// The low 16 bits as a signed number: 33000 becomes -32536.
int16_t Wrap16(int64_t value);

// Product in 16-bit signed arithmetic that wraps silently.
int16_t WrapMultiply16(int32_t a, int32_t b);

// The nearest number of 32 bits.
int32_t Clamp32(int64_t value);

// Whole-number quotient truncated toward zero; empty for a divisor of 0 and for the one quotient
// that does not fit.
std::optional<int32_t> DivideTruncating(int32_t dividend, int32_t divisor);

// The number at the start of a text: leading blanks skipped, an optional sign, digits with at most
// one "." and an optional exponent; reading stops at the first other character. No number gives 0.
double LeadingNumber(std::string_view text);

// The same with "," accepted as the decimal sign too, for numbers another locale has written.
double LeadingNumberAnyLocale(std::string_view text);

// The whole text as a decimal whole number (blanks around it allowed); empty when anything else
// stands in it or it does not fit into 32 bits.
std::optional<int32_t> ParseWhole(std::string_view text);

// The whole text as a number with "." as decimal sign, an optional sign and exponent; empty when
// anything else stands in it or it is not finite.
std::optional<double> ParseNumber(std::string_view text);

// Text without blanks, tabs and line ends at both ends.
std::string_view Trimmed(std::string_view text);

}  // namespace velt
