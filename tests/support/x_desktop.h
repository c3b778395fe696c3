// A display of the test's own with a window manager: Xvfb on a display number that was free, and
// openbox.
#pragma once

#include <memory>

#include "support/process.h"

namespace velt {

class XDesktop {
 public:
  enum class Manager { Openbox, None };

  // Returns when the window manager is up; throws std::runtime_error after 10 s without.
  explicit XDesktop(Manager manager = Manager::Openbox);

  void StartManager();
  void KillManager() { windowManager_->Kill(); }

  void Kill() { server_->Kill(); }
  void Freeze() { server_->Signal(SIGSTOP); }
  void GoOn() { server_->Signal(SIGCONT); }
  const std::string& Display() const { return display_; }  // ":7"
  std::vector<std::string> Environment() const { return {"DISPLAY=" + display_}; }

 private:
  TempFolder folder_;
  const std::filesystem::path log_ = folder_ / "log";
  std::string display_;
  std::unique_ptr<Process> server_;
  std::unique_ptr<Process> windowManager_;
};

}  // namespace velt
