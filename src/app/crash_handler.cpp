#include "app/crash_handler.h"

#include <signal.h>

#include <array>
#include <atomic>

namespace velt {
namespace {

constexpr std::array<int, 5> kCrashes{SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL};

// A signal handler reaches nothing but what stands here.
std::atomic<ReleaseRegistry*> current{nullptr};

void Handle(int number) {
  if (ReleaseRegistry* registry = current.exchange(nullptr)) registry->ReleaseAllInCrash();
  // The default action was restored by SA_RESETHAND: the crash takes its usual course.
  ::raise(number);
}

}  // namespace

void InstallCrashHandler(ReleaseRegistry& registry) {
  current = &registry;
  struct sigaction action {};
  action.sa_handler = Handle;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : kCrashes) ::sigaction(signal, &action, nullptr);
}

void RemoveCrashHandler() {
  current = nullptr;
}

}  // namespace velt
