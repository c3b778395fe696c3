// Work that is ended by force between two of its system calls.
#pragma once

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace velt {

// Runs the work in a child process and kills it right before its system call of that number, from 0
// on. False when it came to its end before.
template <class Work>
bool KilledBeforeCall(int number, Work work) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    work();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  // It stops twice at each call, before and after it.
  for (int stop = -1; stop < 2 * number; ++stop) {
    if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) {
      ::kill(child, SIGKILL);
      ::waitpid(child, nullptr, 0);
      throw std::runtime_error("a child process cannot be followed here");
    }
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status)) return false;
    if (!WIFSTOPPED(status)) throw std::runtime_error("the child process failed");
  }
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  return true;
}

}  // namespace velt
