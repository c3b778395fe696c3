// The colour dialog `frmColors`: lets the user choose the display's colours. What is chosen is seen
// at once; only OK keeps it.
#pragma once

#include <cstdint>
#include <optional>

#include "display/main_display.h"
#include "form/colors_form.h"
#include "platform/on_top.h"
#include "ports/colour_chooser.h"

namespace velt {

class ColorDialog {
 public:
  struct Parts {
    ColorsForm& form;
    MainDisplay& display;
    OnTop& onTop;
    ColourChooser& chooser;
  };
  // `opener` is the menu's item.
  ColorDialog(MenuItem& opener, const Parts& parts);

  // Shows the dialog; one that is open comes before the other windows.
  void Open();
  // Closes it; the colours are again those from before.
  void Close();

  void cmdColor_Click(int32_t index);
  void cmdDefault_Click(int32_t index);
  void cmdDefaults_Click();
  void cmdOK_Click();

 private:
  // What is being chosen with the platform's chooser.
  struct Choice {
    int32_t index;   // in the colour table
    int32_t before;  // the colour that it was
  };

  void Try(const DisplayColours& colours);
  void TryOne(int32_t index, int32_t value);
  // The colour of the present choice, 0xFFRRGGBB; without one it is again what it was.
  void TryChoice(std::optional<uint32_t> colour);
  void DropChoice();
  void ShowColours();
  void ShowPalette();

  Parts parts_;
  std::optional<Choice> choice_;
  OnTop::Lowered lowered_;  // while it is open
  Connections connections_;
};

}  // namespace velt
