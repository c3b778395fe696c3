// The older table of band presets: ten bands, each with a title and a frequency. Its file is met
// once, when an earlier version left it, and carried over into the present presets.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace velt {

class Bands {
 public:
  static constexpr int32_t kRows = 10;
  struct Row {
    std::string title;
    int32_t frequencyHz = 0;
  };

  Bands() { DefaultBandFreqs(); }

  std::array<Row, kRows> rows;

  void DefaultBandFreqs();

  // Reads the file's text: for each row a line with the title and one with the frequency, which
  // ends at a comma. False when lines are missing or a frequency is no number of 32 bits; then the
  // rows are the defaults.
  bool LoadBands(std::string_view text);

  // The file's text, with lines ended by CR LF.
  std::string SaveBands() const;
};

}  // namespace velt
