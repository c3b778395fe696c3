// Presets as CSV: a table with a mistake changes nothing, any other is written so that it reads the
// same, and tells no frequency that a preset could not tune to.
#include <cstdint>
#include <string>

#include "presets/preset_csv.h"
#include "presets/preset_text.h"
#include "require.h"
#include "text/numbers.h"

using namespace velt;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  PresetTable table;
  const std::string mistake = ReadPresetCsv(input, table);
  if (!mistake.empty()) {
    Require(PresetText(table) == PresetText(PresetTable()), "a mistake changes nothing");
    Require(mistake.starts_with("line ") && mistake.size() < 300, "a mistake is told shortly");
    Require(mistake.find('\n') == std::string::npos, "a mistake is told in one line");
    return 0;
  }
  for (int32_t cell = 0; cell < PresetTable::kBands * PresetTable::kPresets; ++cell) {
    const int32_t column = PresetTable::kFirstFrequency + cell % PresetTable::kPresets;
    const double kilohertz = LeadingNumber(table.Cell(cell / PresetTable::kPresets, column));
    Require(kilohertz == 0 || (kilohertz > 10 && kilohertz <= 2'000'000), "it can be tuned to");
  }
  PresetTable again;
  Require(ReadPresetCsv(PresetCsv(table), again).empty(), "what was written can be read");
  Require(PresetText(again) == PresetText(table), "every preset comes back");
  return 0;
}
