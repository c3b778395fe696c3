// The platform's colour chooser. It blocks no other window.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "event/event.h"

namespace velt {

class ColourChooser {
 public:
  virtual ~ColourChooser() = default;

  // While it is open, what the user points at, as 0xFFRRGGBB. Not every platform's chooser tells.
  Event<uint32_t> pointedAt;

  // Opens the chooser over the window that the user is at, with a colour (0xFFRRGGBB, or 0 for the
  // desktop's own button face). The answer comes in a later turn of the loop, empty when the
  // chooser was cancelled. One that is open already is dropped.
  virtual void Pick(const std::string& title, uint32_t initial,
                    std::function<void(std::optional<uint32_t>)> chosen) = 0;

  // Closes the chooser; nothing is called any more.
  virtual void Drop() = 0;
};

}  // namespace velt
