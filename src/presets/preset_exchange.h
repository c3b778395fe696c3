// Gives the table of presets away as CSV, and takes one over. Of one that has a mistake nothing is
// taken.
#pragma once

#include <filesystem>
#include <string>

#include "ports/files.h"
#include "presets/preset_store.h"
#include "presets/preset_table.h"

namespace velt {

class PresetExchange {
 public:
  PresetExchange(PresetTable& presets, PresetStore& store, Files& files)
      : presets_(presets), store_(store), files_(files) {}

  // Both return what failed, as a line for people; empty for success.

  // Replaces the file as a whole; never that of the presets themselves.
  std::string Export(const std::filesystem::path& file) const;

  // The new table is saved at once and the old one kept as its ".bak". On a failure table and file
  // are as they were.
  std::string Import(const std::filesystem::path& file);

 private:
  PresetTable& presets_;
  PresetStore& store_;
  Files& files_;
};

}  // namespace velt
