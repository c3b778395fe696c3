#include "adapters/x11/chord_sender.h"

#include <xcb/xtest.h>

#include <algorithm>

namespace velt {
namespace {

constexpr xcb_keysym_t kShift = 0xFFE1;
constexpr xcb_keysym_t kControl = 0xFFE3;
constexpr xcb_keysym_t kAlt = 0xFFE9;
// Pressed again they would be the other way round.
constexpr xcb_keysym_t kLocks[] = {0xFF7F, 0xFF14, 0xFFE5, 0xFFE6};  // Num, Scroll, Caps, Shift

}  // namespace

ChordSender::ChordSender(XConnection& server) : server_(server) {
  const auto* extension = ::xcb_get_extension_data(server_.Get(), &xcb_test_id);
  works_ = extension != nullptr && extension->present != 0;
  connections_ += server_.happened.Listen([this](const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7F) != XCB_MAPPING_NOTIFY) return;
    LearnKeys();
  });
  LearnKeys();
  server_.Settle();
}

void ChordSender::LearnKeys() {
  const xcb_setup_t* setup = ::xcb_get_setup(server_.Get());
  firstCode_ = setup->min_keycode;
  server_.Ask<xcb_get_keyboard_mapping_reply_t>(
      ::xcb_get_keyboard_mapping(server_.Get(), firstCode_,
                                 static_cast<uint8_t>(setup->max_keycode - firstCode_ + 1)),
      [this](const xcb_get_keyboard_mapping_reply_t* reply) {
        if (reply == nullptr) return;
        symbolsPerCode_ = reply->keysyms_per_keycode;
        const xcb_keysym_t* first = ::xcb_get_keyboard_mapping_keysyms(reply);
        symbols_.assign(first, first + ::xcb_get_keyboard_mapping_keysyms_length(reply));
        LearnModifiers();
      });
}

void ChordSender::LearnModifiers() {
  server_.Ask<xcb_get_modifier_mapping_reply_t>(
      ::xcb_get_modifier_mapping(server_.Get()),
      [this](const xcb_get_modifier_mapping_reply_t* reply) {
        if (reply == nullptr) return;
        std::vector<xcb_keycode_t> locks;
        for (const xcb_keysym_t lock : kLocks) {
          if (const auto code = CodeOf(lock)) locks.push_back(*code);
        }
        const xcb_keycode_t* first = ::xcb_get_modifier_mapping_keycodes(reply);
        modifiers_.assign(first, first + ::xcb_get_modifier_mapping_keycodes_length(reply));
        std::erase_if(modifiers_, [&locks](xcb_keycode_t code) {
          return code == 0 || std::find(locks.begin(), locks.end(), code) != locks.end();
        });
        std::sort(modifiers_.begin(), modifiers_.end());
        modifiers_.erase(std::unique(modifiers_.begin(), modifiers_.end()), modifiers_.end());
      });
}

// A key that has the symbol at once is better than one that needs another one held.
std::optional<xcb_keycode_t> ChordSender::CodeOf(xcb_keysym_t symbol) const {
  for (int column = 0; column < symbolsPerCode_; ++column) {
    const auto step = static_cast<size_t>(symbolsPerCode_);
    for (size_t i = static_cast<size_t>(column); i < symbols_.size(); i += step) {
      if (symbols_[i] == symbol) return static_cast<xcb_keycode_t>(firstCode_ + i / step);
    }
  }
  return std::nullopt;
}

std::optional<ChordSender::Strokes> ChordSender::StrokesOf(const KeyChord& chord) const {
  std::vector<xcb_keysym_t> symbols;
  if (chord.control) symbols.push_back(kControl);
  if (chord.alt) symbols.push_back(kAlt);
  if (chord.shift) symbols.push_back(kShift);
  symbols.push_back(static_cast<unsigned char>(chord.key));
  Strokes strokes;
  for (const xcb_keysym_t symbol : symbols) {
    const auto code = CodeOf(symbol);
    if (!code) return std::nullopt;
    strokes.push_back(*code);
  }
  return strokes;
}

bool ChordSender::Send(const std::vector<KeyChord>& chords, const uint8_t (&held)[32]) {
  std::vector<Strokes> all;
  for (const KeyChord& chord : chords) {
    const auto strokes = StrokesOf(chord);
    if (!strokes) return false;
    all.push_back(*strokes);
  }
  Strokes down;
  for (const xcb_keycode_t key : modifiers_) {
    if ((held[key / 8] >> (key % 8) & 1) != 0) down.push_back(key);
  }
  for (const xcb_keycode_t key : down) Fake(XCB_KEY_RELEASE, key);
  for (const Strokes& strokes : all) {
    for (const xcb_keycode_t key : strokes) Fake(XCB_KEY_PRESS, key);
    for (auto key = strokes.rbegin(); key != strokes.rend(); ++key) Fake(XCB_KEY_RELEASE, *key);
  }
  for (const xcb_keycode_t key : down) Fake(XCB_KEY_PRESS, key);
  server_.Send();
  return true;
}

void ChordSender::Fake(uint8_t type, xcb_keycode_t key) {
  ::xcb_test_fake_input(server_.Get(), type, key, XCB_CURRENT_TIME, server_.Root(), 0, 0, 0);
}

}  // namespace velt
