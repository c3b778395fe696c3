// Windows of other programs as the desktop sees them: found by their titles, brought to the front,
// typed into and closed. No call waits for the desktop or for the other program.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "event/event.h"

namespace velt {

class EngineWindow {
 public:
  using Done = std::function<void(bool)>;

  virtual ~EngineWindow() = default;

  // Find may answer differently now. Raised on the window's thread, never from within a call.
  Event<> changed;

  // Why no window can be found and typed into here, in a sentence for the user; empty when it can.
  virtual std::string Unavailable() const = 0;

  // The window with exactly this title, 0 when there is none. From what the desktop told last, so
  // that it may be asked as often as is convenient.
  virtual uint32_t Find(const std::string& title) const = 0;

  // Brings the window to the front and says whether it became the active one within a second.
  // `done` is called once, later; not at all when this object ends before.
  virtual void Activate(uint32_t window, Done done) = 0;

  // Types key chords into the active window and says whether all of them were: "(^s)" is S with
  // Ctrl held ("^" Ctrl, "%" Alt, "+" Shift, parentheses group). Nothing is typed when `window` is
  // not the active one; when another one takes the keyboard at that very moment, it may have got
  // them, which counts as not typed. Every key that was pressed is released, and what the user held
  // is held again. `done` as above.
  virtual void SendKeys(uint32_t window, const std::string& keys, Done done) = 0;

  // Asks the window to close, as its user would.
  virtual void Close(uint32_t window) = 0;
};

}  // namespace velt
