// What the program finds around itself in this session: desktop, screens, sound server.
#pragma once

#include <string>
#include <vector>

#include "event/event.h"

namespace velt {

// For people to read; what is not known, or not known yet, is empty.
struct SessionFacts {
  std::string toolkit;        // "Qt 6.4.2"
  std::string windowSystem;   // "X11", "X11 (Xwayland)", "wayland"
  std::string windowManager;  // "Openbox"
  std::string desktop;        // as the session calls itself
  std::vector<std::string> screens;
  std::string soundServer;  // its name and version, or why there is none

  bool operator==(const SessionFacts&) const = default;
};

class SessionInfo {
 public:
  virtual ~SessionInfo() = default;

  // What is known by now.
  virtual SessionFacts Facts() const = 0;

  // Asks whoever knows the rest, without waiting for an answer.
  virtual void Ask() = 0;

  // After Ask: more is known than before.
  Event<> learnt;
};

}  // namespace velt
