// The file of presets: what can be read is written so that it reads the same, and a table with any
// texts in it can be stored.
#include <cstdint>
#include <string>

#include "presets/preset_text.h"
#include "require.h"

using namespace velt;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::string before = PresetText(PresetTable());
  PresetTable table;
  if (ReadPresetText(input, table) != PresetTextFault::None) {
    Require(PresetText(table) == before, "what cannot be read changes nothing");
  }
  const std::string text = PresetText(table);
  PresetTable again;
  Require(ReadPresetText(text, again) == PresetTextFault::None, "what was written can be read");
  Require(PresetText(again) == text, "what was read is written the same");

  // Pieces of the input as cells.
  size_t at = 0;
  for (int32_t cell = 0; at < size; ++cell) {
    const size_t length = 1 + data[at] % 32U;
    table.Cell(cell % PresetTable::kBands, cell % 3 * PresetTable::kPresets) =
        input.substr(at + 1, length);
    at += length;
  }
  table.Cell(9, PresetTable::kFirstMode) = input;
  const std::string stored = PresetText(table);
  Require(ReadPresetText(stored, again) == PresetTextFault::None, "any texts can be stored");
  Require(PresetText(again) == stored, "and come back");
  return 0;
}
