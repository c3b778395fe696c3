// Texts from outside that may be of an older system.
#pragma once

#include <string>
#include <string_view>

namespace velt {

// The length in bytes of the character that a text begins with: of several bytes where they are
// UTF-8, else 1. The text is not empty.
size_t CharacterLength(std::string_view text);

// Latin-1 as UTF-8.
std::string FromLatin1(std::string_view text);

// The text itself if it is UTF-8; taken as Latin-1 where it is not.
std::string AsUtf8(std::string_view text);

}  // namespace velt
