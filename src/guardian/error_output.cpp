#include "guardian/error_output.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include "guardian/descriptor.h"

namespace velt {

void KeepErrorOutputFromWaiting() {
  // A terminal may be set to stop programs in the background that write to it, and who read a pipe
  // may be gone.
  for (const int number : {SIGTTOU, SIGPIPE}) ::signal(number, SIG_IGN);
  struct stat status {};
  if (::fstat(STDERR_FILENO, &status) != 0) return;
  if (!S_ISFIFO(status.st_mode) && !S_ISCHR(status.st_mode)) return;
  const Descriptor own(
      ::open("/proc/self/fd/2", O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (own.IsOpen()) ::dup2(own.Number(), STDERR_FILENO);
}

void WriteErrorLine(const std::string& line) {
  pollfd error{STDERR_FILENO, POLLOUT, 0};
  // With POLLERR or POLLHUP beside it nobody is left who reads.
  if (::poll(&error, 1, 0) != 1 || error.revents != POLLOUT) return;
  const std::string whole = line + "\n";
  // Nobody is left to be told of a failure to tell.
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, whole.data(), whole.size());
}

}  // namespace velt
