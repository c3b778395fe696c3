// Text of the clipboard and the marked text, asked for without waiting for their owner.
#pragma once

#include "adapters/x11/x_connection.h"
#include "ports/pasted_text.h"

namespace velt {

class X11PastedText final : public PastedText {
 public:
  static constexpr Milliseconds kLimit{1000};

  // `display`: as of X11EngineWindow.
  explicit X11PastedText(Scheduler& scheduler, const std::string& display = {});

  void Ask(From from, std::function<void(const std::string&)> told) override;

 private:
  void Convert(xcb_atom_t kind);
  void Hear(const xcb_selection_notify_event_t& answer);
  void Tell(const std::string& text);

  Scheduler& scheduler_;
  XConnection server_;
  xcb_window_t window_ = 0;  // that the text is handed to
  xcb_atom_t clipboard_ = 0;
  xcb_atom_t utf8_ = 0;
  xcb_atom_t place_ = 0;  // the property of the window
  xcb_atom_t from_ = 0;
  std::function<void(const std::string&)> told_;
  Scheduler::Handle limit_;
  Connections connections_;
};

}  // namespace velt
