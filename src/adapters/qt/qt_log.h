// The log over Qt's logging categories: warnings go to the standard error output, everything to a
// file where one was asked for.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "ports/log.h"

namespace velt {

class QtLog : public Log {
 public:
  // Both receive messages in UTF-8, without a line's end, from any thread but one at a time, and
  // must not wait: the window's thread is among them. `warn` gets what is a warning or worse,
  // `writeLine` everything; null: there is no file. Installed once in a program's run.
  static void Install(std::function<void(const std::string&)> warn,
                      std::function<void(std::string_view)> writeLine);

  void Write(LogLevel level, const char* category, std::string_view text) override;
};

}  // namespace velt
