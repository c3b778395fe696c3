// A serial line of two ends without any hardware: a terminal pair. The test's end plays what is
// connected; the other is a device that is found at a path of its own, which stays the same when
// the line hangs up and comes back.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

#include "support/temp_folder.h"

namespace velt {

class SerialLine {
 public:
  SerialLine() { Connect(); }
  ~SerialLine() { HangUp(); }
  SerialLine(const SerialLine&) = delete;
  SerialLine& operator=(const SerialLine&) = delete;

  std::string Path() const { return (folder_.Path() / "tty").string(); }

  void Connect() {
    HangUp();
    int device = -1;
    if (::openpty(&end_, &device, nullptr, nullptr, nullptr) != 0) return;
    termios raw{};
    ::tcgetattr(device, &raw);
    ::cfmakeraw(&raw);
    ::tcsetattr(device, TCSANOW, &raw);
    ::close(device);
    ::fcntl(end_, F_SETFL, O_NONBLOCK);
    ::fcntl(end_, F_SETFD, FD_CLOEXEC);
    std::filesystem::create_symlink(::ptsname(end_), Path());
  }
  // The device is gone for whoever has it open.
  void HangUp() {
    if (end_ >= 0) ::close(end_);
    end_ = -1;
    ::unlink(Path().c_str());
  }
  bool Say(std::string_view text) const {
    return ::write(end_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  }
  // All that came out of the device so far.
  const std::string& Heard() {
    std::array<char, 256> bytes{};
    ssize_t count = 0;
    while ((count = ::read(end_, bytes.data(), bytes.size())) > 0) {
      heard_.append(bytes.data(), static_cast<size_t>(count));
    }
    return heard_;
  }
  // Nobody has the device open (any more).
  bool IsClosed() const {
    pollfd look{end_, POLLIN, 0};
    return ::poll(&look, 1, 0) == 1 && (look.revents & POLLHUP) != 0;
  }

 private:
  TempFolder folder_;
  int end_ = -1;
  std::string heard_;
};

}  // namespace velt
