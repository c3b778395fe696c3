#include "display/color_dialog.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "text/formats.h"

namespace velt {
namespace {

constexpr int32_t kMenuIndex = 2;
constexpr std::array<const char*, 6> kSchemes{"Common", "Gray", "Red", "Green", "Blue", "Color"};
constexpr int16_t kRainbow = 5;  // takes no notice of the clarity

int32_t& Entry(DisplayColours& colours, int32_t index) {
  return colours.*kColourTable.at(static_cast<size_t>(index));
}

int32_t Entry(const DisplayColours& colours, int32_t index) {
  return colours.*kColourTable.at(static_cast<size_t>(index));
}

// Only the menu colour can be the desktop's own.
bool IsDesktops(int32_t index, int32_t value) {
  return index == kMenuIndex && SystemColourIndex(value);
}

std::string ValueText(int32_t index, int32_t value) {
  return IsDesktops(index, value) ? "Desktop's own" : ColourText(Colour(value).Argb());
}

}  // namespace

ColorDialog::ColorDialog(MenuItem& opener, const Parts& parts) : parts_(parts) {
  ColorsForm& form = parts_.form;
  connections_ += opener.clicked.Listen([this] { Open(); });
  connections_ += form.Window.closeAsked.Listen([this] { Close(); });
  for (auto& [index, button] : form.cmdColor) {
    connections_ += button->clicked.Listen([this, i = index] { cmdColor_Click(i); });
  }
  for (auto& [index, button] : form.cmdDefault) {
    connections_ += button->clicked.Listen([this, i = index] { cmdDefault_Click(i); });
  }
  connections_ += form.cmdDefaults.clicked.Listen([this] { cmdDefaults_Click(); });
  connections_ += form.cmdOK.clicked.Listen([this] { cmdOK_Click(); });
  connections_ += form.cmdCancel.clicked.Listen([this] { Close(); });
  connections_ += parts_.chooser.pointedAt.Listen([this](uint32_t colour) { TryChoice(colour); });
  connections_ += parts_.display.options.paletteChanged.Listen([this] { ShowPalette(); });
}

void ColorDialog::Open() {
  if (parts_.form.Window.visible) return parts_.form.Window.BringForward();
  lowered_ = parts_.onTop.Lower();
  ShowColours();
  ShowPalette();
  parts_.form.Window.visible = true;
}

void ColorDialog::Close() {
  if (!parts_.form.Window.visible) return;
  choice_.reset();
  parts_.chooser.Drop();
  parts_.form.Window.visible = false;
  lowered_.reset();
  parts_.display.TryColours(std::nullopt);
}

void ColorDialog::cmdColor_Click(int32_t index) {
  DropChoice();
  const ColourButton& button = parts_.form.cmdColor[index];
  choice_ = {index, Entry(parts_.display.ShownColours(), index)};
  parts_.chooser.Pick(button.caption, button.colour, [this](std::optional<uint32_t> colour) {
    TryChoice(colour);
    choice_.reset();
  });
}

void ColorDialog::cmdDefault_Click(int32_t index) {
  DropChoice();
  TryOne(index, Entry(DisplayColours(), index));
}

void ColorDialog::cmdDefaults_Click() {
  DropChoice();
  Try({});
}

// What is seen is kept, even where the chooser is still open.
void ColorDialog::cmdOK_Click() {
  parts_.display.colours = parts_.display.ShownColours();
  Close();
}

void ColorDialog::Try(const DisplayColours& colours) {
  parts_.display.TryColours(colours);
  ShowColours();
}

void ColorDialog::TryOne(int32_t index, int32_t value) {
  DisplayColours colours = parts_.display.ShownColours();
  Entry(colours, index) = value;
  Try(colours);
}

void ColorDialog::TryChoice(std::optional<uint32_t> colour) {
  if (!choice_) return;
  TryOne(choice_->index, colour ? Colour::FromArgb(*colour).Value() : choice_->before);
}

void ColorDialog::DropChoice() {
  parts_.chooser.Drop();
  TryChoice(std::nullopt);
  choice_.reset();
}

void ColorDialog::ShowColours() {
  const DisplayColours& shown = parts_.display.ShownColours();
  const DisplayColours defaults;
  for (auto& [index, button] : parts_.form.cmdColor) {
    const int32_t value = Entry(shown, index);
    button->colour = IsDesktops(index, value) ? 0 : Colour(value).Argb();
    button->value = ValueText(index, value);
    parts_.form.cmdDefault[index].enabled = value != Entry(defaults, index);
  }
  parts_.form.cmdDefaults.enabled = shown != defaults;
}

void ColorDialog::ShowPalette() {
  const DisplayOptions& options = parts_.display.options;
  std::vector<uint32_t> colours(WaterPalette::shownCount);
  for (int i = 0; i < WaterPalette::shownCount; ++i) {
    colours[static_cast<size_t>(i)] = options.palette[i].Argb();
  }
  parts_.form.picPalette.colours = std::move(colours);
  std::string caption;
  if (options.waterGrey >= 0 && options.waterGrey <= kRainbow) {
    caption = kSchemes.at(static_cast<size_t>(options.waterGrey));
    if (options.waterGrey != kRainbow) caption += ", clarity " + std::to_string(options.clearity);
  }
  parts_.form.picPalette.caption = caption;
}

}  // namespace velt
