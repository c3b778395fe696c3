// Work that is ended by force between two of its steps on the disk.
#pragma once

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace velt {

// Whether a process is about to enter a system call that may change what is on the disk. Killed
// before any other it leaves the same as before the next.
inline bool EntersAChange(pid_t process) {
  __ptrace_syscall_info call{};
  ::ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof(call), &call);
  if (call.op != PTRACE_SYSCALL_INFO_ENTRY) return false;
  switch (call.entry.nr) {
    case SYS_openat:
      return (call.entry.args[2] & O_CREAT) != 0;
    case SYS_read:
    case SYS_close:
    case SYS_lseek:
    case SYS_fstat:
    case SYS_newfstatat:
    case SYS_readlinkat:
#ifdef SYS_readlink
    case SYS_readlink:
#endif
    case SYS_getdents64:
    case SYS_fsync:
    case SYS_getpid:
    case SYS_kill:
    case SYS_brk:
    case SYS_mmap:
    case SYS_munmap:
      return false;
    default:
      return true;
  }
}

// Runs the work in a child process and kills it right before its change of that number, from 0 on.
// False when it came to its end before.
template <class Work>
bool KilledBeforeChange(int number, Work work) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    work();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD);
  for (int changes = -1; changes < number;) {
    const bool followed = ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) == 0;
    if (followed) ::waitpid(child, &status, 0);
    if (followed && WIFEXITED(status)) return false;
    if (!followed || !WIFSTOPPED(status)) {
      ::kill(child, SIGKILL);
      throw std::runtime_error("the child process cannot be followed");
    }
    if (EntersAChange(child)) ++changes;
  }
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  return true;
}

}  // namespace velt
