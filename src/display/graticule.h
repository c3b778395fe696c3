// The scale under the display and the lines over it: labels, grid and marker lines.
#pragma once

#include <cstdint>
#include <string>

#include "form/main_form.h"

namespace velt {

class Graticule {
 public:
  explicit Graticule(DisplayControls& form) : form_(form) {}

  // Fills labels and lines for the mode (0, 1 or 69) and the present size of display and scale.
  // With `absolute` a shifted mode shows audio frequencies, else distances from the carrier. Level
  // lines mean nothing across a waterfall, where they would look like gaps in time.
  void Place(int32_t zokaMode, bool absolute, bool waterfall);

 private:
  void PlaceScaleLabels(int32_t zokaMode, bool absolute);
  void PlaceLines(bool aroundCarrier, bool waterfall);

  DisplayControls& form_;
};

// The caption of scale label i for a mode.
std::string ScaleLabelText(int32_t i, int32_t zokaMode, bool absolute);

}  // namespace velt
