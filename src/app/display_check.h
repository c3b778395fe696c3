// Whether there is a display for a window, asked before Qt, which ends the program at once and with
// a core dump where there is none.
#pragma once

#include <memory>
#include <string>

#include "app/options.h"

namespace velt {

struct SettledDisplay {
  std::string problem;  // why no window can be shown on any, as a sentence; empty when one can
  // To be kept until Qt has its own connection: a server that is left by its only client may begin
  // anew and refuse the next one.
  std::shared_ptr<void> connection;
};

// Settles which kind of display Qt will use. Takes at most some seconds, for a server that does not
// answer. Defined once for each operating system.
SettledDisplay SettleDisplay(const Options& options);

}  // namespace velt
