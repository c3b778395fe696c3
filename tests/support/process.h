// What a test needs around programs that it starts: processes that never outlive it and waiting for
// a condition with a deadline.
#pragma once

#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace velt {

// Asks every 2 ms until the condition holds (true) or the limit is over (false). The only place
// where a test sleeps.
bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

std::string ReadText(const std::filesystem::path& file);

// In the order of their names.
std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder);

// A started program, which leads a group of processes. The destructor ends it: SIGTERM, and SIGKILL
// when it has not gone after 2 s.
class Process {
 public:
  struct Options {
    std::vector<std::string> environment = {};        // "NAME=value", beside or over the test's own
    std::filesystem::path output = "/dev/null";       // receives standard output and error
    std::map<int, std::filesystem::path> files = {};  // further descriptors, opened for writing
  };

  // Throws std::system_error when there can be no new process. A program that cannot be run ends
  // with exit code 127.
  Process(const std::vector<std::string>& command, const Options& options);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  bool Running();
  void Signal(int signal);  // nothing happens once the program has ended
  void Kill();              // returns when the program has ended
  void KillGroup();         // all of its group
  bool WaitForEnd(std::chrono::milliseconds limit) {
    return WaitUntil([this] { return !Running(); }, limit);
  }
  // After its end: the exit code, or minus the number of the signal that ended it.
  std::optional<int> ExitCode() const { return exitCode_; }
  int64_t Id() const { return id_; }

 private:
  int64_t id_ = -1;
  std::optional<int> exitCode_;
};

// Runs a command to its end and returns what it printed; "" after 10 s without an end.
std::string Output(std::vector<std::string> command, const std::vector<std::string>& environment);

// The guardian that a program has, 0 for none.
int64_t GuardianOf(int64_t program);

bool IsAlive(int64_t process);

}  // namespace velt
