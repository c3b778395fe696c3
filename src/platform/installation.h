// Where the program and its engine are installed, and which versions they have.
#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "ports/engine_window.h"
#include "ports/files.h"

namespace velt {

struct ProgramVersion {
  int major = 3;
  int minor = 0;
  int revision = 0;
  std::string Text() const;  // "3.0.0"
};

// True when a stored version text begins with a digit below 3, is empty or is no number.
bool IsVersionBelow3(std::string_view versionText);

struct Installation {
  ProgramVersion version;
  std::filesystem::path programFolder;
  std::filesystem::path currentFolder;        // of the start
  std::filesystem::path documentationFolder;  // where an installed manual lies
  std::filesystem::path engineFolder;
  bool engineFolderNamed = false;  // by somebody who expects the engine there
  std::filesystem::path dataFolder;
  std::filesystem::path settingsFile;  // empty: the settings are kept in memory
  std::filesystem::path omniRigFolder;
  bool enginePresent = false;
  std::string engineVersionText = "VELT V2.5.";
  std::string engineTitle;  // of its window, where somebody has named one
  std::array<std::string, 3> unitNames{"Hz", "kHz", "MHz"};

  // Looks for the engine and reads its version text. The text is the trimmed first line of its
  // version file; a missing file or an empty line keeps the default.
  void DetectEngine(const Files& files);

  // The title by which the engine's window is found: its version text unless another was named.
  const std::string& EngineTitle() const {
    return engineTitle.empty() ? engineVersionText : engineTitle;
  }

  // The engine's window; 0 when it is not there or no engine is installed.
  uint32_t DetectVELTWindow(const EngineWindow& windows) const;
};

}  // namespace velt
