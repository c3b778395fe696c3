// Lays out the main window: size limits, border rule, places, scale labels, grid and marker lines.
#pragma once

#include <functional>
#include <string>

#include "audio/display_options.h"
#include "form/main_form.h"

namespace velt {

// What the form's least and most sizes are at a start.
struct WindowLimits {
  static constexpr int32_t kMinWidth = 5000;  // twips
  static constexpr int32_t kMaxWidth = 8385;
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
  WindowLayout(Main& form, const DisplayOptions& options);

  // Called by every change of the window's size and after changes of what it shows.
  void Form_Resize();

  void mnusettings_Click(int32_t index);

  // Sizeable border while the screen size is remembered, else a fixed one.
  void ApplyBorderRule();

  // Exists under this name and does nothing.
  void SetTheLabels() {}

  SavedWindowSize saved;
  bool quitting = false;

  // The display has a new size: drawing buffers follow.
  std::function<void(int32_t width, int32_t height)> resizeDisplay;
  // Redraws colours, grid and lines.
  std::function<void()> opmaak;
  // The spectrum style follows the settings menu.
  std::function<void(bool bars, bool oscilloscope)> setStyle;

 private:
  bool CorrectSize();
  void PlaceScaleLabels();
  void PlaceLines();

  Main& form_;
  const DisplayOptions& options_;
  Connections connections_;
};

// The caption of scale label i for a mode.
std::string ScaleLabelText(int32_t i, int32_t zokaMode, bool absolute);

}  // namespace velt
