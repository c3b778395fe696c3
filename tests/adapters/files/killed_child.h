// Work that is ended by force between two of its steps on the disk.
#pragma once

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace velt {

// Runs the work in a child process and kills it before or after one of its system calls, the
// number counting these stops from 0. False when it came to its end before.
template <class Work>
bool KilledAtStop(int number, Work work) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    work();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL);
  for (int stop = 0; stop <= number && !WIFEXITED(status); ++stop) {
    if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) {
      throw std::runtime_error("the child process cannot be followed");
    }
    ::waitpid(child, &status, 0);
  }
  if (WIFEXITED(status)) return false;
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  return true;
}

}  // namespace velt
