#include "display/cursor_readout.h"

#include "rig/shown_frequency.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

constexpr const char* kKilohertz = " kHz";

}  // namespace

CursorReadout::CursorReadout(const Parts& parts) : parts_(parts) {
  connections_ += parts_.form.Scope.mouseMove.Listen([this](int x) {
    const AnalysisSettings& analysis = parts_.options.analysis;
    const bool overWater = analysis.waterfall && analysis.zokaMode == 0;
    overWater ? picWater_MouseMove(x) : Scope_MouseMove(x);
  });
  // The cursor may rest while the rig is tuned.
  connections_ += parts_.rig.lblFrequency.caption.changed.Listen([this] { ShowRadioFrequency(); });
  connections_ += parts_.messageTimer.enabled.changed.Listen([this] { MakeRoomForMessages(); });
}

void CursorReadout::Scope_MouseMove(int x) {
  const std::optional<int32_t> hertz = CursorHz(
      x, parts_.form.Scope.scaleWidth, parts_.options.analysis.zokaMode, parts_.engine.scaleOffset);
  if (!hertz) return;
  parts_.form.lblFreq.caption = std::to_string(*hertz) + "Hz";
  ShowOffset();
}

void CursorReadout::picWater_MouseMove(int x) {
  const std::optional<int32_t> hertz = CursorHz(x, parts_.form.Scope.scaleWidth, 0, 0);
  if (!hertz) return;
  parts_.form.lblFreq.caption = FixedText(*hertz / 1000.0, 3) + kKilohertz;
  ShowOffset();
}

void CursorReadout::ShowOffset() {
  const auto hertz = static_cast<int32_t>(ShownCursorHz(parts_.form.lblFreq));
  if (hertz >= 0) parts_.form.lblDelta.caption = AtLeastTwoDigits(hertz / 10);
  ShowRadioFrequency();
  MakeRoomForMessages();
}

void CursorReadout::ShowRadioFrequency() {
  const auto hertz = static_cast<int32_t>(ShownCursorHz(parts_.form.lblFreq));
  const std::optional<int32_t> rigHz = ShownFrequencyHz(parts_.rig.lblFrequency);
  const bool known = rigHz && hertz >= 0 && !parts_.form.lblFreq.caption.Get().empty();
  parts_.form.lblCursor.caption = known ? CursorKilohertz(int64_t{*rigHz} + hertz) : "";
}

// A message takes the readout's place for the two seconds of its life. The tens below the carrier
// are not told: what stands there is an older place's.
void CursorReadout::MakeRoomForMessages() {
  DisplayControls& form = parts_.form;
  const bool room = !parts_.messageTimer.enabled;
  form.lblFreq.visible = room;
  form.lblDelta.visible = room && ShownCursorHz(form.lblFreq) >= 0;
  form.lblCursor.visible = room;
}

std::optional<int32_t> CursorHz(int x, int width, int32_t zokaMode, int16_t scaleOffset) {
  if (width <= 0) return std::nullopt;
  const double kilohertz = x / (width / (zokaMode == 69 ? 11.0 : 22.0));
  if (zokaMode == 69) return RoundHalfEven(kilohertz * 1000 - 6015 - scaleOffset);
  if (zokaMode == 1) return RoundHalfEven(kilohertz * 1000 - 12000 - scaleOffset);
  return RoundHalfEven(kilohertz * 1000);
}

double ShownCursorHz(const Label& readout) {
  const std::string& text = readout.caption;
  return LeadingNumber(text) * (text.ends_with(kKilohertz) ? 1000 : 1);
}

std::string CursorKilohertz(int64_t frequencyHz) {
  return std::to_string(frequencyHz / 1000) + "." +
         std::string(LastCharacters(AtLeastTwoDigits(Clamp32(frequencyHz / 10)), 2));
}

}  // namespace velt
