// Notices that matter stay in the window until they are over or the user dismisses them.
#pragma once

#include <string>
#include <vector>

#include "form/main_form.h"

namespace velt {

// In the order in which they are shown, one at a time.
enum class NoticeKind {
  Transmitter,   // it may be on although nobody wants it
  Transmission,  // one was ended without being asked
  Sound,
  Recording,  // it has ended, or a part of it is missing
  Engine,     // it is missing, or its window is, or cannot be controlled in this session
};

class Notices {
 public:
  explicit Notices(MessageControls& form);

  // Replaces an earlier notice of the same kind. Transmitter notices are urgent and stand before
  // all others.
  void Raise(NoticeKind kind, const std::string& text);
  void Over(NoticeKind kind);

  // The user has read the notice shown; the next one follows.
  void lblNotice_Click();

 private:
  struct Notice {
    NoticeKind kind;
    std::string text;
  };
  void Refresh();

  MessageControls& form_;
  std::vector<Notice> notices_;
  Connections connections_;
};

}  // namespace velt
