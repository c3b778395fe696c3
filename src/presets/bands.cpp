#include "presets/bands.h"

#include <utility>

#include "presets/preset_text.h"
#include "text/field_reader.h"

namespace velt {

void Bands::DefaultBandFreqs() {
  // The last one is an example whose title and frequency differ.
  rows = {{{"160m", 1800000},
           {"80m", 3500000},
           {"40m", 7000000},
           {"30m", 10100000},
           {"20m", 14000000},
           {"17m", 18068000},
           {"15m", 21000000},
           {"12m", 24890000},
           {"10m", 28000000},
           {"14.245 example", 14243000}}};
}

bool Bands::LoadBands(std::string_view text) {
  FieldReader reader(text);
  for (Row& row : rows) {
    auto title = reader.Line();
    const auto line = reader.Line();
    // What follows the comma must not be taken for the next title.
    const auto frequencyHz = FieldReader(line.value_or("")).Number32();
    const bool readable = title && line && title->size() <= kLongestPresetLine;
    if (!readable || (!frequencyHz && !line->empty())) {
      DefaultBandFreqs();
      return false;
    }
    row = {std::move(*title), frequencyHz.value_or(0)};
  }
  return true;
}

std::string Bands::SaveBands() const {
  std::string text;
  for (const Row& row : rows) {
    text += PresetLine(row.title) + PresetLine(std::to_string(row.frequencyHz));
  }
  return text;
}

}  // namespace velt
