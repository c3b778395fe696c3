// Lays out the main window: its size limits and the places of its controls.
#pragma once

#include <vector>

#include "display/main_display.h"
#include "form/main_form.h"
#include "shell/window_places.h"

namespace velt {

// What the window's least and most sizes are made from.
struct WindowLimits {
  static constexpr int32_t kMinWidth = 5000;  // twips
  static constexpr int32_t kMaxWidth = kStandardWidthTwips;
  static constexpr int32_t kMinHeight = 1500;
  static constexpr int32_t kMaxHeight = 2460;
  static constexpr int32_t kSavedHeightDefault = 2430;
};

struct SavedWindowSize {
  int32_t widthTwips = WindowLimits::kMaxWidth;
  int32_t heightTwips = WindowLimits::kSavedHeightDefault;
};

class WindowLayout {
 public:
  WindowLayout(Main& form, MainDisplay& display);

  // Called by every change of the window's size and of its border.
  void Form_Resize();

  // Gives the window its saved size, if it is remembered; once in a run.
  void ApplySavedSize();

  // Exists under this name and does nothing.
  void SetTheLabels() {}

  SavedWindowSize saved;
  bool quitting = false;

 private:
  void SetLimits();
  bool CorrectSize();

  Main& form_;
  MainDisplay& display_;
  std::vector<PlaceRule> rules_;
  bool savedSizeApplied_ = false;
  Connections connections_;
};

}  // namespace velt
