#include "display/click_to_tune.h"

#include "display/cursor_readout.h"
#include "rig/shown_frequency.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

constexpr size_t kCentreLine = 5;
constexpr int kCentreReach = 3;  // pixels to both sides that still count as on the line

}  // namespace

ClickToTune::ClickToTune(const Parts& parts) : parts_(parts) {
  connections_ +=
      parts_.form.Scope.mouseDown.Listen([this](int button, int x) { Scope_MouseDown(button, x); });
  connections_ += parts_.form.lblFreqDetect.clicked.Listen([this] { lblFreqDetect_MouseDown(); });
}

void ClickToTune::Scope_MouseDown(int button, int x) {
  if (button == 1) TuneToCursor();
  if (button == 2) ChooseSideband(x);
}

void ClickToTune::TuneToCursor() {
  const bool stopped = parts_.captureForm.imgStartStop.tag.Get() == "Play";
  if (stopped || parts_.options.analysis.zokaMode != 0) return;
  parts_.form.Scope.toolTip = "";
  const std::optional<int32_t> rigHz = ShownFrequencyHz(parts_.rigForm.lblFrequency);
  if (!rigHz) return parts_.messages.Show("No frequency is shown: nothing was sent");
  const double offsetHz = ShownCursorHz(parts_.form.lblFreq);
  parts_.control.TuneTo(*rigHz + offsetHz - WrapMultiply16(parts_.rig.offsetKHz, 1000));
}

void ClickToTune::ChooseSideband(int x) {
  const std::vector<ScopeLine>& lines = parts_.form.Scope.verticalGrid;
  if (lines.size() <= kCentreLine) return;
  const int centre = lines[kCentreLine].x1;
  if (x < centre - kCentreReach) return parts_.commands.SendEngineMode("LSB");
  parts_.commands.SendEngineMode(x > centre + kCentreReach ? "USB" : "CW");
}

void ClickToTune::lblFreqDetect_MouseDown() {
  const double tens = LeadingNumber(Without(parts_.form.lblFreqDetect.caption.Get(), '.'));
  const std::optional<int32_t> frequencyHz = RoundHalfEven(tens * 10);
  if (frequencyHz) parts_.control.SetTRXFrequency(*frequencyHz, parts_.rig.vfo);
}

}  // namespace velt
