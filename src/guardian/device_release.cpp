#include "guardian/device_release.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace velt {

DeviceRelease::DeviceRelease(const ReleaseRecipe& recipe, int descriptor, Milliseconds limit,
                             SteadyTime now)
    : descriptor_(descriptor),
      lowersLines_(recipe.lowersLines),
      end_(now + limit),
      unwritten_(recipe.release),
      due_(now) {}

pollfd DeviceRelease::Waits() const {
  return {unwritten_.empty() ? -1 : descriptor_, POLLOUT, 0};
}

ReleaseTask::State DeviceRelease::Turn(SteadyTime now, short) {
  if (!begun_) {
    begun_ = true;
    const int flags = ::fcntl(descriptor_, F_GETFL);
    if (flags < 0) return State::Failed;
    if ((flags & O_NONBLOCK) == 0) ::fcntl(descriptor_, F_SETFL, flags | O_NONBLOCK);
    if (lowersLines_ && !LowersLines()) return State::Failed;
  }
  const State state = WriteOn(now);
  if (state != State::UnderWay || now < end_) return state;
  // Closing a device waits for what it did not take.
  ::tcflush(descriptor_, TCOFLUSH);
  return State::Failed;
}

// A device without such lines keyed nothing by them.
bool DeviceRelease::LowersLines() const {
  const int lines = TIOCM_DTR | TIOCM_RTS;
  if (::ioctl(descriptor_, TIOCMBIC, &lines) == 0) return true;
  return errno == ENOTTY || errno == EINVAL || errno == EOPNOTSUPP;
}

ReleaseTask::State DeviceRelease::WriteOn(SteadyTime now) {
  if (!unwritten_.empty()) {
    const ssize_t written = ::write(descriptor_, unwritten_.data(), unwritten_.size());
    if (written < 0 && errno != EAGAIN && errno != EINTR) return State::Failed;
    if (written > 0) unwritten_.erase(0, static_cast<size_t>(written));
  }
  int waiting = 0;
  const bool left =
      unwritten_.empty() && (::ioctl(descriptor_, TIOCOUTQ, &waiting) != 0 || waiting == 0);
  due_ = std::min(end_, now + kLookAgain);
  return left ? State::Released : State::UnderWay;
}

}  // namespace velt
