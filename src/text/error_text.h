// What the system's error numbers mean.
#pragma once

#include <string>

namespace velt {

// For people, as "No space left on device".
std::string ErrorText(int error);

}  // namespace velt
