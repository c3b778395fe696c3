// The log over Qt's logging categories: warnings go to standard error, everything to a file where
// one was asked for.
#pragma once

#include <functional>

#include "ports/log.h"

namespace velt {

class QtLog : public Log {
 public:
  // `writeLine` receives all messages in UTF-8, without a line's end, from any thread but one at a
  // time; null: there is no file. Installed once in a program's run.
  static void Install(std::function<void(std::string_view)> writeLine);

  void Write(LogLevel level, const char* category, std::string_view text) override;
};

}  // namespace velt
