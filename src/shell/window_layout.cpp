#include "shell/window_layout.h"

#include <algorithm>

#include "shell/window_places.h"

namespace velt {
namespace {

constexpr int32_t kScaleDivisions = 11;
constexpr int32_t kLastScaleLabel = 11;
constexpr int32_t kCarrierLabel = 6;  // the label that reads 0 in the modes around a carrier

}  // namespace

std::string ScaleLabelText(int32_t i, int32_t zokaMode, bool absolute) {
  if (zokaMode == 69) return std::to_string(i - 6) + "kc";
  const int32_t kilohertz = zokaMode == 1 && !absolute ? 2 * i - 12 : 2 * i;
  return std::to_string(kilohertz) + "kHz";
}

WindowLayout::WindowLayout(Main& form, const DisplayOptions& options)
    : form_(form), options_(options) {
  form_.Window.least = WindowSize{WindowLimits::kMinWidth, WindowLimits::kMinHeight};
  form_.Window.most = WindowSize{WindowLimits::kMaxWidth, WindowLimits::kMaxHeight};
  form_.Window.widthTwips = WindowLimits::kMaxWidth;
  form_.Window.heightTwips = WindowLimits::kMaxHeight;
  connections_ += form_.Window.widthTwips.changed.Listen([this] { Form_Resize(); });
  connections_ += form_.Window.heightTwips.changed.Listen([this] { Form_Resize(); });
  connections_ += form_.Window.minimised.changed.Listen([this] { Form_Resize(); });
  for (auto& [index, item] : form_.mnusettings) {
    connections_ += item->clicked.Listen([this, i = index] { mnusettings_Click(i); });
  }
}

void WindowLayout::Form_Resize() {
  if (form_.Window.minimised || quitting) return;
  // A correction raises a new resize, which lays out the window.
  if (CorrectSize()) return;

  const WindowPlaces p = ArrangeWindow(form_.Window.widthTwips / kTwipsPerPixel,
                                       form_.Window.heightTwips / kTwipsPerPixel);
  form_.cmdOptions.place = p.options;
  form_.Image2.place = p.file;
  form_.Image3.place = p.cat;
  form_.imgStartStop.place = p.startStop;
  form_.lblFrequency.place = p.frequency;
  form_.lblMode.place = p.mode;
  form_.lblTRXMode.place = p.trx;
  form_.optTXRX[0].place = p.transmit;
  form_.optTXRX[1].place = p.receive;
  form_.lblFreqDetect.place = p.peak;
  form_.chkSpecMode.place = p.waterfall;
  form_.Slider.place = p.slider;
  form_.Scope.place = p.scope;
  form_.picScales.place = p.scales;
  form_.Slider2.place = p.slider2;
  form_.Smeter.place = p.meter;
  form_.Label3.place = p.modeSource;
  form_.lblMessage.place = p.message;
  form_.lblNotice.place = p.notice;

  form_.Scope.scaleWidth = p.scope.width;
  form_.Scope.scaleHeight = p.scope.height;
  if (resizeDisplay) resizeDisplay(p.scope.width, p.scope.height);
  PlaceScaleLabels();
  PlaceLines();
  if (opmaak) opmaak();
}

bool WindowLayout::CorrectSize() {
  if (!form_.mnusettings[3].checked || saved.widthTwips <= 0 || saved.heightTwips <= 0) {
    return false;
  }
  auto& width = form_.Window.widthTwips;
  auto& height = form_.Window.heightTwips;
  const WindowSize least = form_.Window.least;
  const WindowSize most = form_.Window.most;
  if (width < least.width) {
    width = least.width;
  } else if (width > most.width) {
    width = most.width;
  } else if (height > most.height) {
    height = most.height;
  } else if (height < least.height) {
    height = least.height;
  } else {
    return false;
  }
  return true;
}

void WindowLayout::PlaceScaleLabels() {
  const Rectangle strip = form_.picScales.place;
  const int32_t step = strip.width / kScaleDivisions;
  if (step <= 0) return;
  int32_t i = 0;
  for (int32_t position = 0; position <= strip.width; position += step) {
    Label& label = form_.lblScales[i];
    label.place = Rectangle{strip.left + position, strip.top, step, strip.height};
    label.visible = true;
    label.caption = ScaleLabelText(i, options_.analysis.zokaMode, form_.mnusettings[4].checked);
    i = std::min(i + 1, kLastScaleLabel);
  }
}

void WindowLayout::PlaceLines() {
  const int width = form_.Scope.scaleWidth;
  const int height = form_.Scope.scaleHeight;
  const int step = width / kScaleDivisions;
  // Grid lines stand at the scale labels; element 5, between two of them, is the centre line.
  std::vector<ScopeLine> vertical;
  for (int label = 1; label < kScaleDivisions; ++label) {
    if (label == kCarrierLabel) {
      vertical.push_back({width / 2, 0, width / 2, height - 1, true, true});
    }
    vertical.push_back({label * step, 0, label * step, height - 1, true, false});
  }
  form_.Scope.verticalGrid = vertical;

  std::vector<ScopeLine> horizontal;
  for (int quarter = 1; quarter < 4; ++quarter) {
    const int y = quarter * height / 4;
    horizontal.push_back({0, y, width - 1, y, true, false});
  }
  form_.Scope.horizontalGrid = horizontal;

  const bool aroundCarrier = options_.analysis.zokaMode != 0;
  const int carrier = kCarrierLabel * step;
  form_.Scope.markers =
      std::vector<ScopeLine>{{carrier, 0, carrier, height - 1, aroundCarrier, false}};
}

void WindowLayout::mnusettings_Click(int32_t index) {
  auto& checked = form_.mnusettings[index].checked;
  checked = !checked;
  if (setStyle) setStyle(form_.mnusettings[1].checked, form_.mnusettings[2].checked);
  if (index == 3) ApplyBorderRule();
  Form_Resize();
}

void WindowLayout::ApplyBorderRule() {
  form_.Window.sizeable = form_.mnusettings[3].checked.Get();
  form_.Window.Touch();
}

}  // namespace velt
