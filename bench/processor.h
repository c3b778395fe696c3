// What the figures were measured on, for the head of every benchmark's output.
#pragma once

#include <fstream>
#include <string>

namespace velt {

// The processor's name as the system gives it; "unknown" where it gives none.
inline std::string ProcessorName() {
  std::ifstream information("/proc/cpuinfo");
  for (std::string line; std::getline(information, line);) {
    if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
  }
  return "unknown";
}

}  // namespace velt
