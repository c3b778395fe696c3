// What the program says to whoever called it.
#pragma once

#include <filesystem>
#include <string>

namespace velt {

// One line on standard error.
void Warn(const std::string& line);

// The same as the reason why the run has failed. Returns its exit code, 1.
int Fail(const std::string& line);

// The same for a file that could not be written, with the system's error number.
int FailToWrite(const std::filesystem::path& file, int error);

// The text on standard output, at once. Returns the run's exit code: 0, or 1
// after a line on standard error when it does not get there whole.
int Print(const std::string& text);

}  // namespace velt
