#include "app/console.h"

#include <cerrno>
#include <cstdio>

#include "text/error_text.h"
#include "text/paths.h"

namespace velt {

void Warn(const std::string& line) {
  std::fprintf(stderr, "velt-sa: %s\n", line.c_str());
}

int Fail(const std::string& line) {
  Warn(line);
  return 1;
}

int FailToWrite(const std::filesystem::path& file, int error) {
  return Fail(PathText(file) + " could not be written: " + ErrorText(error));
}

int Print(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) {
    return 0;
  }
  return Fail("The standard output could not be written: " + ErrorText(errno));
}

}  // namespace velt
