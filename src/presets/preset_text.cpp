#include "presets/preset_text.h"

#include "text/field_reader.h"
#include "text/formats.h"

namespace velt {
namespace {

constexpr const char* kHeader = ";Trekrik Presets Data v1.0, by KALVARO";

// Lines until one is missing or too long; from then on every line is empty.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : reader_(text) {}

  std::string Next() {
    auto line = fault == PresetTextFault::None ? reader_.Line() : std::nullopt;
    if (fault != PresetTextFault::None) return "";
    if (!line) {
      fault = PresetTextFault::TooShort;
    } else if (line->size() > kLongestPresetLine) {
      fault = PresetTextFault::LineTooLong;
    } else {
      return *line;
    }
    return "";
  }

  PresetTextFault fault = PresetTextFault::None;

 private:
  FieldReader reader_;
};

}  // namespace

PresetTextFault ReadPresetText(std::string_view text, PresetTable& table) {
  if (FieldReader(text.substr(0, kLongestPresetLine)).Line().value_or("") != kHeader) {
    return PresetTextFault::WrongHeader;
  }
  LineReader lines(text);
  constexpr int kBeforeModes = 4;
  for (int i = 0; i < kBeforeModes; ++i) lines.Next();
  PresetTable read = table;
  read.PresetModeList = lines.Next();
  if (lines.fault != PresetTextFault::None) return lines.fault;
  if (read.PresetModeList.size() < 2 || read.PresetModeList.find(',') == std::string::npos) {
    return PresetTextFault::NoModes;
  }
  lines.Next();
  for (int32_t band = 0; band < PresetTable::kBands; ++band) {
    read.Cell(band, PresetTable::kTitle) = lines.Next();
    for (int32_t preset = 0; preset < PresetTable::kPresets; ++preset) {
      read.Cell(band, PresetTable::kFirstFrequency + preset) = lines.Next();
      read.Cell(band, PresetTable::kFirstMode + preset) = lines.Next();
    }
  }
  if (lines.fault == PresetTextFault::None) table = read;
  return lines.fault;
}

std::string PresetText(const PresetTable& table) {
  std::string text;
  for (const std::string_view line :
       {std::string_view(kHeader), std::string_view("[Title]"), std::string_view("Presets"),
        std::string_view("[Modes]"), std::string_view(table.PresetModeList),
        std::string_view("[Data]")}) {
    text += PresetLine(line);
  }
  for (int32_t band = 0; band < PresetTable::kBands; ++band) {
    text += PresetLine(table.Cell(band, PresetTable::kTitle));
    for (int32_t preset = 0; preset < PresetTable::kPresets; ++preset) {
      text += PresetLine(table.Cell(band, PresetTable::kFirstFrequency + preset));
      text += PresetLine(table.Cell(band, PresetTable::kFirstMode + preset));
    }
  }
  return text + PresetLine("[EOF]");
}

std::string PresetLine(std::string_view text) {
  std::string line = Without(Without(text, '\r'), '\n');
  if (line.size() > kLongestPresetLine) line.resize(kLongestPresetLine);
  return line + "\r\n";
}

}  // namespace velt
