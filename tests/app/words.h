// A call as a user types it.
#pragma once

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace velt {

// What stands between blanks.
inline std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

}  // namespace velt
