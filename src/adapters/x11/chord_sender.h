// Types key chords as if they came from the keyboard, with the server's test extension.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "adapters/x11/key_notation.h"
#include "adapters/x11/x_connection.h"

namespace velt {

class ChordSender {
 public:
  // Knows the keyboard when it is made; waits for the server's answers for that.
  explicit ChordSender(XConnection& server);

  // Whether the server has the extension.
  bool Works() const { return works_; }

  // Types the chords into whatever has the keyboard. All goes out at once: what the user holds is
  // released, each key pressed and released, what was held pressed again. False, and nothing is
  // typed, when the keyboard lacks one of the keys. `held` is the state of all keys, a bit each.
  bool Send(const std::vector<KeyChord>& chords, const uint8_t (&held)[32]);

 private:
  using Strokes = std::vector<xcb_keycode_t>;

  void LearnKeys();
  void LearnModifiers();
  std::optional<xcb_keycode_t> CodeOf(xcb_keysym_t symbol) const;
  std::optional<Strokes> StrokesOf(const KeyChord& chord) const;
  void Fake(uint8_t type, xcb_keycode_t key);

  XConnection& server_;
  bool works_ = false;
  xcb_keycode_t firstCode_ = 8;
  int symbolsPerCode_ = 0;
  std::vector<xcb_keysym_t> symbols_;
  std::vector<xcb_keycode_t> modifiers_;  // all keys that modify others, but for the locks
  Connections connections_;
};

}  // namespace velt
