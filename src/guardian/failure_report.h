// What the guardian has to say to people: on the standard error output and in the program's log.
#pragma once

#include <string>
#include <vector>

namespace velt {

class FailureReport {
 public:
  // Absolute path; empty: none.
  void SetLogFile(const std::string& path) { logFile_ = path; }

  // Goes to the standard error output at once unless that would wait, and is kept for the log.
  void Warn(const std::string& text);

  // Is kept for the log only.
  void Note(const std::string& text);

  // Writes what was kept. A disk may take its time: to be called when nothing else is urgent.
  void WriteLog();

 private:
  std::string logFile_;
  std::vector<std::string> kept_;
};

}  // namespace velt
