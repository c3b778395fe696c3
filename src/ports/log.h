// Diagnostic messages by category ("velt.audio", "velt.rig", "velt.settings", ...). Never per tick.
#pragma once

#include <string_view>

namespace velt {

enum class LogLevel { Debug, Info, Warning, Error };

class Log {
 public:
  virtual ~Log() = default;
  // May be called from any thread.
  virtual void Write(LogLevel level, const char* category, std::string_view text) = 0;
};

}  // namespace velt
