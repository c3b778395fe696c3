#include "display/graticule.h"

#include <algorithm>
#include <vector>

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

void Graticule::Place(int32_t zokaMode, bool absolute, bool waterfall) {
  PlaceScaleLabels(zokaMode, absolute);
  PlaceLines(zokaMode != 0, waterfall);
}

void Graticule::PlaceScaleLabels(int32_t zokaMode, bool absolute) {
  const Rectangle strip = form_.picScales.place;
  const int32_t step = strip.width / kScaleDivisions;
  if (step <= 0) return;
  int32_t i = 0;
  for (int32_t position = 0; position <= strip.width; position += step) {
    Label& label = form_.lblScales[i];
    label.place = Rectangle{strip.left + position, strip.top, step, strip.height};
    label.visible = true;
    label.caption = ScaleLabelText(i, zokaMode, absolute);
    i = std::min(i + 1, kLastScaleLabel);
  }
}

void Graticule::PlaceLines(bool aroundCarrier, bool waterfall) {
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
    horizontal.push_back({0, y, width - 1, y, !waterfall, false});
  }
  form_.Scope.horizontalGrid = horizontal;

  const int carrier = kCarrierLabel * step;
  form_.Scope.markers =
      std::vector<ScopeLine>{{carrier, 0, carrier, height - 1, aroundCarrier, false}};
}

}  // namespace velt
