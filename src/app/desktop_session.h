// What is around the program on a Linux desktop: of Qt what it runs with, of the X server who
// manages the windows, of the sound server which one it is.
#pragma once

#include <memory>
#include <string>

#include "adapters/pulse/pulse_device_lister.h"
#include "adapters/x11/x_session.h"
#include "ports/scheduler.h"
#include "ports/session_info.h"

namespace velt {

class DesktopSession : public SessionInfo {
 public:
  // `server`: the X server of the windows; null where they are on another kind of display.
  DesktopSession(Scheduler& scheduler, XConnection* server);

  SessionFacts Facts() const override;
  void Ask() override;

 private:
  std::string WindowSystem() const;

  Scheduler& scheduler_;
  std::unique_ptr<XSession> x_;
  std::unique_ptr<PulseDeviceLister> sound_;  // from the first question on: it has a thread
  std::string soundServer_;
  Connections connections_;
};

}  // namespace velt
