// The log over Qt's logging categories: warnings go to standard error, everything to the log file
// where one was asked for.
#pragma once

#include "ports/log.h"

namespace velt {

class QtLog : public Log {
 public:
  // A file of that name receives all messages; empty: no file. Installed once in a program's run.
  // False when the file could not be opened.
  static bool Install(const std::string& file);

  void Write(LogLevel level, const char* category, std::string_view text) override;
};

}  // namespace velt
