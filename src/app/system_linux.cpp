#include <unistd.h>

#include "app/system.h"

namespace velt {

std::vector<std::string> ArgumentTexts(int argc, char** argv) {
  // The first of them need not be there.
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::filesystem::path ProgramFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

bool ErrorsGoToATerminal() {
  return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace velt
