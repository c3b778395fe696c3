// The table of presets: ten bands, each with a title, six frequencies and their modes, all texts,
// and the names of the modes to choose from.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace velt {

class PresetTable {
 public:
  static constexpr int32_t kBands = 10;
  static constexpr int32_t kColumns = 18;
  static constexpr int32_t kPresets = 6;
  static constexpr int32_t kTitle = 0;
  static constexpr int32_t kFirstFrequency = 6;  // kHz, as the user typed it
  static constexpr int32_t kFirstMode = 12;

  PresetTable() { PresetDefaults(); }

  std::string PresetModeList;  // the names of modes on offer, with commas between them
  // What is selected on the panel.
  int16_t SelectedBand = 0;    // 0 to 9
  int16_t SelectedPreset = 0;  // 0 to 5

  // Band 0 to 9, column 0 to 17; throws std::out_of_range otherwise.
  std::string& Cell(int32_t band, int32_t column);
  const std::string& Cell(int32_t band, int32_t column) const;

  // Fills list of modes, titles, frequencies and modes with the program's own; columns 1 to 5 stay.
  void PresetDefaults();

 private:
  std::array<std::string, static_cast<size_t>(kBands* kColumns)> cells_;
};

}  // namespace velt
