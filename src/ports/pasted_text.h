// Text that the user pastes: what another program, or this one, has copied or marked. Its owner may
// be slow or hang.
#pragma once

#include <functional>
#include <string>

namespace velt {

class PastedText {
 public:
  virtual ~PastedText() = default;

  enum class From {
    Clipboard,
    Marked,  // what is marked right now, for the middle mouse button
  };
  // `told` is called once, later, with the text in UTF-8; empty when there is none or its owner
  // does not give it within a second. Not called at all when this object ends before, or another
  // call comes before.
  virtual void Ask(From from, std::function<void(const std::string&)> told) = 0;
};

}  // namespace velt
