// The user's home folder.
#pragma once

#include <filesystem>

namespace velt {

// What HOME says, else what the system knows of the user; empty when neither does.
std::filesystem::path HomeFolder();

}  // namespace velt
