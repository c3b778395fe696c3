// The presets as the text of their file: a header, the names of the modes, then thirteen lines for
// each band. Texts are the bytes that were found, whatever their encoding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "presets/preset_table.h"

namespace velt {

// A longer line is none that anybody has typed, and no button could show it.
constexpr size_t kLongestPresetLine = 4096;

enum class PresetTextFault {
  None,
  WrongHeader,  // something else than presets
  NoModes,      // the line of modes has no comma
  TooShort,
  LineTooLong,
};

// Fills list of modes, titles, frequencies and modes from the text, in which lines may end with LF
// too. On a fault the table stays as it was.
PresetTextFault ReadPresetText(std::string_view text, PresetTable& table);

// The text with lines ended by CR LF. It always reads back: to the same table, but for line ends in
// a cell, which are left out, and for cells that are longer than a line may be.
std::string PresetText(const PresetTable& table);

// One line of it with its end.
std::string PresetLine(std::string_view text);

}  // namespace velt
