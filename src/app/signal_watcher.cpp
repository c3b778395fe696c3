#include "app/signal_watcher.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace velt {
namespace {

constexpr std::array<int, 3> kSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler reaches nothing but what stands here.
volatile sig_atomic_t writeEnd = -1;

void Handle(int) {
  const int saved = errno;
  const char byte = 1;
  // A full pipe already says what there is to say.
  [[maybe_unused]] const ssize_t written = ::write(writeEnd, &byte, 1);
  errno = saved;
}

void Install(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
}

}  // namespace

SignalWatcher::SignalWatcher(std::function<void()> asked) : asked_(std::move(asked)) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  readEnd_ = ends[0];
  writeEnd = ends[1];
  notifier_ = new QSocketNotifier(readEnd_, QSocketNotifier::Read, this);
  connect(notifier_, &QSocketNotifier::activated, this, [this] {
    std::array<char, 16> bytes{};
    if (::read(readEnd_, bytes.data(), bytes.size()) > 0) asked_();
  });
  Install(Handle);
}

SignalWatcher::~SignalWatcher() {
  if (readEnd_ < 0) return;
  Install(SIG_DFL);
  ::close(writeEnd);
  writeEnd = -1;
  ::close(readEnd_);
}

}  // namespace velt
