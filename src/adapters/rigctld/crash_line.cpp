#include "adapters/rigctld/crash_line.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "adapters/rigctld/rig_command.h"

namespace velt {

void CrashLine::SetDescriptor(int descriptor) {
  const int before = descriptor_.exchange(descriptor);
  if (before >= 0) ::close(before);
}

void CrashLine::Release() const noexcept {
  const int descriptor = descriptor_.load();
  if (descriptor < 0 || !keyed_.load()) return;
  const int savedError = errno;
  ::send(descriptor, kReleaseLine.data(), kReleaseLine.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  errno = savedError;
}

}  // namespace velt
