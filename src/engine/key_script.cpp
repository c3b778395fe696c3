#include "engine/key_script.h"

namespace velt {

KeyScript CommandScript(const std::string& keys) {
  return {ActivateStep{}, ActivateStep{}, ChordStep{keys}, ChordStep{keys}};
}

KeyScript StartScript() {
  const PauseStep pause{Milliseconds(600)};
  const ChordStep start{"(^s)"};
  return {ActivateStep{}, pause, ActivateStep{}, start, pause, start};
}

}  // namespace velt
