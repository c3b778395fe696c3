// The command line as a value.
#pragma once

#include <QStringList>
#include <array>
#include <string>

#include "spectrum/analysis_settings.h"

namespace velt {

struct AnalyseOptions {
  std::string file;
  std::string csv;    // empty: none
  std::string image;  // empty: none
  int mode = 0;       // 0, 1 or 69
  int precision = 1;  // 1 to 4
  int slider = 15;    // 1 to 100
  bool waterfall = false;
  int width = 524;
  int height = 110;
};

struct Options {
  enum class Run {
    Window,
    Headless,
    Analyse,
    ListDevices,
    Reset,
    Help,     // `text` is the usage
    Version,  // `text` is the version
    Invalid,  // `text` says what is wrong, followed by the usage
  };
  Run run = Run::Window;
  std::string text;

  bool demo = false;
  std::string input;  // sound file instead of the sound server
  std::string audioDevice;
  std::array<std::string, 2> rigAddresses;  // of rig 1 and 2; empty: as set up
  std::string dataFolder;
  std::string engineFolder;
  std::string logFile;
  int seconds = 0;         // of a headless run
  std::string screenshot;  // written at the end of a headless run
  AnalyseOptions analyse;

  // Such runs keep settings and presets to themselves unless a data folder is named.
  bool KeepsInMemory() const { return (demo || !input.empty()) && dataFolder.empty(); }
};

// `arguments` begin with the program's name. `versionText` is what --version answers.
Options ParseOptions(const QStringList& arguments, const std::string& versionText);

}  // namespace velt
