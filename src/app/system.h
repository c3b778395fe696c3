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

// The first thing in a run: a file cannot take the place of a standard stream that is closed, and
// one that may not grow any more is an error to be told instead of the program's end.
void PrepareProcess();

// For a run without an event loop: from now on being asked to end is only noted, and asked a second
// time it ends at once.
void NoteInterrupts();
bool Interrupted();

// Whether somebody watches what is written to standard error.
bool ErrorsGoToATerminal();

}  // namespace velt
