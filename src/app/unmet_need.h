// What a run cannot do without and can be tried before it begins.
#pragma once

#include <string>

#include "app/options.h"

namespace velt {

// One line for people; empty when all is there. Makes the data folder that the user named: one that
// cannot be written into would lose settings and recordings.
std::string UnmetNeed(const Options& options);

}  // namespace velt
