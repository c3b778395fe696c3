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
  AskForActivation();
}

// A window that had the keyboard before it was known is not told about: nothing changes.
void X11EngineWindow::AskForActivation() {
  windows_->Activate(activation_->window);
  windows_->LookAtActive([] {});
  again_ = scheduler_.After(kAskAgain, [this] { AskForActivation(); });
}

void X11EngineWindow::IsActiveStill() {
  windows_->LookAtActive([this] {
    if (activation_ && windows_->Active() == activation_->window) Activated(true);
  });
}

void X11EngineWindow::Activated(bool ok) {
  limit_.Cancel();
  quiet_.Cancel();
  again_.Cancel();
  Later(std::exchange(activation_, std::nullopt)->done, ok);
}

// Which window is the active one by now, which keys are down, and last where keys go.
void X11EngineWindow::SendKeys(uint32_t window, const std::string& keys, Done done) {
  const auto chords = ReadKeys(keys);
  if (!windows_ || window == 0 || !keys_->Works() || !chords) return Later(std::move(done), false);
  windows_->LookAtActive([this, window, chords = *chords, done = std::move(done)] {
    if (windows_->Active() != window) return done(false);
    server_.Ask<xcb_query_keymap_reply_t>(
        ::xcb_query_keymap(server_.Get()),
        [this, window, chords, done](const xcb_query_keymap_reply_t* reply) {
          if (reply == nullptr) return done(false);
          windows_->LookAtFocus(
              [this, window, chords, held = *reply, done](const WindowWatch::Focus& focus) {
                const bool typed = focus.window == window && keys_->Send(chords, held.keys);
                typed ? Confirm(focus.keyboard, done) : done(false);
              });
        });
  });
}

// An answer to a request behind the keys means that the server has taken them. Where the keyboard
// is another window's by then, that one may have got them.
void X11EngineWindow::Confirm(xcb_window_t keyboard, const Done& done) {
  server_.Ask<xcb_get_input_focus_reply_t>(
      ::xcb_get_input_focus(server_.Get()),
      [keyboard, done](const xcb_get_input_focus_reply_t* reply) {
        done(reply != nullptr && reply->focus == keyboard);
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
