// The few number patterns that the program shows or writes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velt {

// A frequency in Hz as the frequency labels show it: without its last digit, in groups of 3, 3 and
// 2 digits from the right, the dots between them always there ("7.100.00" for 7100000 Hz,
// ".475.00" for 475000 Hz, ".." for 0). A negative value has a leading "-".
std::string FrequencyText(int32_t frequencyHz);

// A counted frequency in Hz as the frequency labels show it. Format 0: plain Hz ("7100000"); 1:
// without its last digit, in groups with leading zeros ("007.100.00"); 2: MHz ("7.100.00").
std::string CountText(int64_t frequencyHz, int format);

// The absolute value's text with at least two digits ("07", "123").
std::string AtLeastTwoDigits(int32_t value);

// The last `count` characters of a text, or all of it when it is shorter.
std::string_view LastCharacters(std::string_view text, size_t count);

// The first `count` characters of a text, or all of it when it is shorter. A character of several
// bytes is taken whole where the bytes are UTF-8; any other byte is a character of its own.
std::string_view FirstCharacters(std::string_view text, size_t count);

// A single-precision number as short as it reads back exactly, always with "." as decimal sign.
std::string SingleText(float value);

// "True" or "False".
std::string BooleanText(bool value);

// A number with a fixed count of decimals and "." as decimal sign.
std::string FixedText(double value, int decimals);

// A colour's three components as "#RRGGBB"; the highest byte is left out.
std::string ColourText(uint32_t rgb);

// ASCII letters in lower case; other bytes stay as they are.
std::string Lowered(std::string_view text);

// ASCII letters in upper case; other bytes stay as they are.
std::string Raised(std::string_view text);

// The text with every occurrence of one character removed.
std::string Without(std::string_view text, char removed);

}  // namespace velt
