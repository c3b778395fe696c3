// The older file of bands: what can be read is written so that it reads the same, what cannot
// leaves the defaults.
#include <cstdint>
#include <string>

#include "presets/bands.h"
#include "require.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using velt::Bands;
  Bands bands;
  if (!bands.LoadBands({reinterpret_cast<const char*>(data), size})) {
    velt::Bands defaults;
    Require(bands.SaveBands() == defaults.SaveBands(), "a half-read table is no table");
    return 0;
  }
  Bands again;
  Require(again.LoadBands(bands.SaveBands()), "what was written can be read");
  for (size_t row = 0; row < bands.rows.size(); ++row) {
    Require(again.rows[row].title == bands.rows[row].title &&
                again.rows[row].frequencyHz == bands.rows[row].frequencyHz,
            "every row comes back");
  }
  return 0;
}
