#include "adapters/x11/x11_engine_window.h"

#include <algorithm>
#include <utility>

namespace velt {

X11EngineWindow::X11EngineWindow(Scheduler& scheduler, const std::string& display)
    : scheduler_(scheduler), server_(scheduler, display) {
  if (!server_.Works()) return;
  windows_.emplace(server_);
  keys_.emplace(server_);
  connections_ += windows_->titlesChanged.Listen([this] { changed.Raise(); });
  connections_ += windows_->activeChanged.Listen([this] {
    if (activation_ && windows_->Active() == activation_->window) Activated(true);
  });
}

std::string X11EngineWindow::Unavailable() const {
  if (!windows_ || !server_.Works()) {
    return "Engine control needs X11: its window cannot be seen from here";
  }
  if (!keys_->Works()) {
    return "Engine control needs the X server's XTEST extension, which is not there";
  }
  return {};
}

uint32_t X11EngineWindow::Find(const std::string& title) const {
  return windows_ ? windows_->Find(title) : 0;
}

void X11EngineWindow::Activate(uint32_t window, Done done) {
  if (activation_) Activated(false);
  if (!windows_ || window == 0) return Later(std::move(done), false);
  activation_ = Activation{window, std::move(done)};
  limit_ = scheduler_.After(kActivationLimit, [this] { Activated(false); });
  if (windows_->Active() == window) {
    quiet_ = scheduler_.After(kQuiet, [this] { IsActiveStill(); });
  }
  windows_->Activate(window);
}

void X11EngineWindow::IsActiveStill() {
  windows_->LookAtActive([this] {
    if (activation_ && windows_->Active() == activation_->window) Activated(true);
  });
}

void X11EngineWindow::Activated(bool ok) {
  limit_.Cancel();
  quiet_.Cancel();
  Later(std::exchange(activation_, std::nullopt)->done, ok);
}

// What is the active window by now, and which keys are down: both are asked in one go.
void X11EngineWindow::SendKeys(uint32_t window, const std::string& keys, Done done) {
  if (!windows_ || window == 0 || !keys_->Works() || !ReadKeys(keys)) return Later(std::move(done), false);
  windows_->LookAtActive([this, window, keys, done = std::move(done)] {
    if (windows_->Active() != window) return done(false);
    Type(keys, done);
  });
}

void X11EngineWindow::Type(const std::string& keys, const Done& done) {
  server_.Ask<xcb_query_keymap_reply_t>(
      ::xcb_query_keymap(server_.Get()),
      [this, keys, done](const xcb_query_keymap_reply_t* reply) {
        const auto chords = ReadKeys(keys);
        if (reply == nullptr || !chords || !keys_->Send(*chords, reply->keys)) return done(false);
        // An answer after this means that the server has taken the keys.
        server_.Ask<xcb_get_input_focus_reply_t>(
            ::xcb_get_input_focus(server_.Get()),
            [done](const xcb_get_input_focus_reply_t* taken) { done(taken != nullptr); });
      });
}

void X11EngineWindow::Close(uint32_t window) {
  if (windows_) windows_->Close(window);
}

void X11EngineWindow::Later(Done done, bool ok) {
  scheduler_.Post([done = std::move(done), ok, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) done(ok);
  });
}

}  // namespace velt
