#include "display/appearance.h"

#include "text/formats.h"

namespace velt {
namespace {

constexpr uint32_t kMarkerWhileOff = 0xFF808080U;

}  // namespace

void Appearance::Opmaak(const DisplayColours& colours) {
  AnalysisSettings& analysis = parts_.options.analysis;
  analysis.background = Colour(colours.scope);
  analysis.trace = Colour(colours.spectrum);
  analysis.oscilloscope = Colour(colours.oscilloscope);
  analysis.passband = Colour(colours.bandWidth);
  parts_.scope.backColour = analysis.background.Argb();
  parts_.scope.gridColour = Colour(colours.grid).Argb();
  const bool off = Lowered(parts_.engine.modeText) == "off";
  parts_.scope.markerColour = off ? kMarkerWhileOff : analysis.passband.Argb();
  // A system colour is the desktop's own, whatever it is there.
  parts_.window.faceColour = SystemColourIndex(colours.menu) ? 0 : Colour(colours.menu).Argb();
}

}  // namespace velt
