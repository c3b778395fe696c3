#include "presets/preset_table.h"

#include <stdexcept>

namespace velt {
namespace {

struct BandDefault {
  const char* title;
  const char* kilohertz;
};

constexpr std::array<BandDefault, PresetTable::kBands> kBandDefaults{{{"160m", "1800"},
                                                                      {"80m", "3500"},
                                                                      {"40m", "7000"},
                                                                      {"30m", "10000"},
                                                                      {"20m", "14000"},
                                                                      {"17m", "18000"},
                                                                      {"15m", "21000"},
                                                                      {"12m", "24900"},
                                                                      {"10m", "28000"},
                                                                      {"6m", "50000"}}};

// By the number of the band: the low bands use the lower sideband.
const char* DefaultMode(int32_t band) {
  constexpr int32_t kMorseBand = 3;
  if (band < kMorseBand) return "LSB";
  return band == kMorseBand ? "CW" : "USB";
}

size_t Position(int32_t band, int32_t column) {
  if (band < 0 || band >= PresetTable::kBands || column < 0 || column >= PresetTable::kColumns) {
    throw std::out_of_range("no such preset");
  }
  return static_cast<size_t>(band) +
         static_cast<size_t>(PresetTable::kBands) * static_cast<size_t>(column);
}

}  // namespace

std::string& PresetTable::Cell(int32_t band, int32_t column) {
  return cells_[Position(band, column)];
}

const std::string& PresetTable::Cell(int32_t band, int32_t column) const {
  return cells_[Position(band, column)];
}

void PresetTable::PresetDefaults() {
  PresetModeList = "CW,USB,LSB,AM,FM,DRM";
  for (int32_t band = 0; band < kBands; ++band) {
    const BandDefault& defaults = kBandDefaults[static_cast<size_t>(band)];
    Cell(band, kTitle) = defaults.title;
    Cell(band, kFirstFrequency) = defaults.kilohertz;
    for (int32_t preset = 0; preset < kPresets; ++preset) {
      if (preset > 0) Cell(band, kFirstFrequency + preset) = "P" + std::to_string(preset + 1);
      Cell(band, kFirstMode + preset) = DefaultMode(band);
    }
  }
}

}  // namespace velt
