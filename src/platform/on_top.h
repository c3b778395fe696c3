// Keeps the main window above all others, if the settings said so when they were loaded, but not
// while a dialog is open, which it would hide.
#pragma once

#include <memory>

#include "platform/platform_helpers.h"

namespace velt {

class OnTop {
 public:
  explicit OnTop(PlatformHelpers& platform) : platform_(platform) {}
  OnTop(const OnTop&) = delete;
  OnTop& operator=(const OnTop&) = delete;

  // What the settings say; decides for the whole run.
  void Load(bool onTop);

  // Held by each open dialog: the window stays lowered until the last one is reset or destroyed.
  // None may outlive the OnTop.
  struct Close {
    void operator()(OnTop* onTop) const { onTop->Closed(); }
  };
  using Lowered = std::unique_ptr<OnTop, Close>;
  [[nodiscard]] Lowered Lower();

 private:
  void Closed();
  void Apply();

  PlatformHelpers& platform_;
  bool loaded_ = false;
  int dialogs_ = 0;
};

}  // namespace velt
