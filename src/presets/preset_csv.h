// The presets as a table for spreadsheets: comma-separated values with quotes where they are needed
// (RFC 4180), a header line, then a row for each preset.
#pragma once

#include <string>
#include <string_view>

#include "presets/preset_table.h"

namespace velt {

// Lines end with CR LF.
std::string PresetCsv(const PresetTable& table);

// Fills titles, frequencies and modes from a text with a row for each of the sixty presets, in any
// order; list of modes and selection stay. Returns what is wrong first, with its line and field,
// for people; then the table stays as it was. Empty when all is right.
std::string ReadPresetCsv(std::string_view text, PresetTable& table);

}  // namespace velt
