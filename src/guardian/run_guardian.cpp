#include "guardian/run_guardian.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdio>
#include <limits>

#include "guardian/error_output.h"

namespace velt {
namespace {

// What ends a whole session or a group of processes must leave this one alive. They came in
// blocked, so that there is no moment without.
void IgnoreSignals() {
  sigset_t blocked;
  sigemptyset(&blocked);
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE}) {
    ::signal(number, SIG_IGN);
    sigaddset(&blocked, number);
  }
  ::sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
}

void CloseTheRest() {
  constexpr unsigned kAfter = GuardianSocket::kGuardiansNumber + 1;
  ::close_range(STDIN_FILENO, STDOUT_FILENO, 0);
  ::close_range(kAfter, std::numeric_limits<unsigned>::max(), 0);
  // A connection must not become the standard error output.
  if (::fcntl(STDERR_FILENO, F_GETFD) >= 0) return;
  const Descriptor nowhere(::open("/dev/null", O_WRONLY));
  ::dup2(nowhere.Number(), STDERR_FILENO);
}

}  // namespace

int RunGuardian(const GuardianLimits& limits) {
  if (!GuardianSocket::IsOne(GuardianSocket::kGuardiansNumber)) {
    std::fputs("velt-sa: --guardian is for the program itself and does nothing alone\n", stderr);
    return 2;
  }
  IgnoreSignals();
  ::prctl(PR_SET_NAME, "velt-guardian");
  CloseTheRest();
  KeepErrorOutputFromWaiting();
  // The log's path is absolute; no folder shall be kept in use.
  [[maybe_unused]] const int kept = ::chdir("/");
  GuardianLoop(GuardianSocket(Descriptor(GuardianSocket::kGuardiansNumber)), limits).Run();
  return 0;
}

}  // namespace velt
