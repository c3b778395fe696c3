#include "platform/on_top.h"

namespace velt {

void OnTop::Load(bool onTop) {
  loaded_ = onTop;
  Apply();
}

OnTop::Lowered OnTop::Lower() {
  ++dialogs_;
  Apply();
  return Lowered(this);
}

void OnTop::Closed() {
  --dialogs_;
  Apply();
}

void OnTop::Apply() {
  platform_.KeepOnTop(loaded_ && dialogs_ == 0 ? 1 : 0);
}

}  // namespace velt
