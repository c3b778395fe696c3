// What is typed into the engine's window, as data.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "ports/scheduler.h"

namespace velt {

struct ActivateStep {  // the engine's window becomes the active one
  bool operator==(const ActivateStep&) const = default;
};
struct PauseStep {
  Milliseconds span;
  bool operator==(const PauseStep&) const = default;
};
struct ChordStep {
  std::string keys;  // "(^s)": S with Ctrl held
  bool operator==(const ChordStep&) const = default;
};
using KeyStep = std::variant<ActivateStep, PauseStep, ChordStep>;
using KeyScript = std::vector<KeyStep>;

// One of the engine's commands. Activating and typing twice is how the engine takes them surely.
KeyScript CommandScript(const std::string& keys);

// Starts the engine's receiver once its window is there.
KeyScript StartScript();

}  // namespace velt
