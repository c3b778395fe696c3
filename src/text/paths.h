// The only place where a path becomes text or a text a path. Texts are UTF-8; where the system's
// names are bytes (POSIX) they are kept as they are, whether they are UTF-8 or not.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velt {

std::string PathText(const std::filesystem::path& path);
std::filesystem::path TextPath(std::string_view text);

}  // namespace velt
