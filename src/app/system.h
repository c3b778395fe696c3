// What a program asks of its operating system before it has any adapters. Defined once for each
// system.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velt {

// The arguments behind the program's name, as TextPath takes them.
std::vector<std::string> ArgumentTexts(int argc, char** argv);

// The folder that the running program lies in.
std::filesystem::path ProgramFolder();

// Whether somebody watches what is written to standard error.
bool ErrorsGoToATerminal();

}  // namespace velt
