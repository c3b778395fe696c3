// Whether there is a display for a window, asked before Qt, which ends the program at once and with
// a core dump where there is none.
#pragma once

#include <string>

#include "app/options.h"

namespace velt {

// Settles which kind of display Qt will use. Returns why no window can be shown on any, as a
// sentence; empty when one can. Takes at most some seconds, for a server that does not answer.
// Defined once for each operating system.
std::string SettleDisplay(const Options& options);

}  // namespace velt
