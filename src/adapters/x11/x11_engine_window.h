// The windows of an X11 session. A window is brought to the front and, once it has the keyboard,
// typed into like by its user: programs ignore keys that are sent straight to them.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "adapters/x11/chord_sender.h"
#include "adapters/x11/window_watch.h"
#include "adapters/x11/x_connection.h"
#include "ports/engine_window.h"
#include "ports/scheduler.h"

namespace velt {

class X11EngineWindow : public EngineWindow {
 public:
  static constexpr Milliseconds kActivationLimit{1000};
  // How long a window that is the active one has to stay so. A click into another window makes that
  // one active, which is told a little later than the click.
  static constexpr Milliseconds kQuiet{20};
  // Asked again, as a window that comes up at the same moment may have won.
  static constexpr Milliseconds kAskAgain{200};

  // `display`: the X server that this program's own windows are on, which answers; empty: what the
  // session says.
  explicit X11EngineWindow(Scheduler& scheduler, const std::string& display = {});

  // For what else is asked of the server that the windows are on.
  XConnection& Server() { return server_; }

  std::string Unavailable() const override;
  uint32_t Find(const std::string& title) const override;
  void Activate(uint32_t window, Done done) override;
  void SendKeys(uint32_t window, const std::string& keys, Done done) override;
  void Close(uint32_t window) override;

 private:
  struct Activation {
    uint32_t window;
    Done done;
  };

  void Activated(bool ok);
  void IsActiveStill();
  void AskForActivation();
  void Confirm(xcb_window_t keyboard, const Done& done);
  void Later(Done done, bool ok);

  Scheduler& scheduler_;
  XConnection server_;
  std::optional<WindowWatch> windows_;
  std::optional<ChordSender> keys_;
  std::optional<Activation> activation_;
  Scheduler::Handle limit_;
  Scheduler::Handle quiet_;
  Scheduler::Handle again_;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
  Connections connections_;
};

}  // namespace velt
