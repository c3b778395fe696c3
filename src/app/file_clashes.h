// Files that a run is to write although it reads them, or writes them twice.
#pragma once

#include <string>

#include "app/options.h"

namespace velt {

// One line for people; empty when every file is another one. Looks at the disk: names that lead to
// the same file, by links of either kind, are that file.
std::string FileClash(const Options& options);

}  // namespace velt
