#include "shell/appearance.h"

namespace velt {
namespace {

constexpr uint32_t kMarkerWhileOff = 0xFF808080U;

}  // namespace

Appearance::Appearance(Main& form, DisplayOptions& options, const DisplayColours& colours)
    : form_(form), options_(options), colours_(colours) {}

void Appearance::Opmaak() {
  AnalysisSettings& analysis = options_.analysis;
  analysis.background = Colour(colours_.scope);
  analysis.trace = Colour(colours_.spectrum);
  analysis.oscilloscope = Colour(colours_.oscilloscope);
  analysis.passband = Colour(colours_.bandWidth);
  form_.Scope.backColour = analysis.background.Argb();
  form_.Scope.gridColour = Colour(colours_.grid).Argb();
  const bool off = engineOff && engineOff();
  form_.Scope.markerColour = off ? kMarkerWhileOff : analysis.passband.Argb();
  // A system colour is the desktop's own, whatever it is there.
  form_.Window.faceColour = SystemColourIndex(colours_.menu) ? 0 : Colour(colours_.menu).Argb();
}

}  // namespace velt
