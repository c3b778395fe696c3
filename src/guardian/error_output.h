// The standard error output of a process that must never wait for whoever reads it: a terminal may
// have been stopped with Ctrl+S, a pipe may be full.
#pragma once

#include <string>

namespace velt {

// From now on what nobody takes is dropped, whoever in this process writes it, libraries too. Of a
// terminal or pipe this process gets an opening of its own, so that others who write there keep
// theirs. Where that is not possible (a socket, another user's terminal) the output stays as it is.
void KeepErrorOutputFromWaiting();

// One line at once, or none where it would wait; the line's end is added.
void WriteErrorLine(const std::string& line);

}  // namespace velt
