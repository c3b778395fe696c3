// The command line as a value.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velt {

struct AnalyseOptions {
  std::filesystem::path file;
  std::filesystem::path csv;          // empty: none
  std::filesystem::path image;        // empty: none
  std::filesystem::path spectrogram;  // empty: none
  int mode = 0;                       // 0, 1 or 69
  int precision = 1;                  // 1 to 4
  int slider = 15;                    // 1 to 100
  bool waterfall = false;
  int width = 524;
  int height = 110;
  // Of the spectrogram's plot, in pixels.
  int plotWidth = 1200;
  int plotHeight = 512;
  // What it shows, in seconds; from 0 on, and below toSeconds.
  double fromSeconds = 0.0;
  std::optional<double> toSeconds;  // empty: to the end
};

struct Options {
  enum class Run {
    Window,
    Headless,
    Analyse,
    ListDevices,
    ExportPresets,
    ImportPresets,
    Reset,
    Help,     // `text` is the usage
    Version,  // `text` is the version
    Invalid,  // `text` says what is wrong, followed by the usage
  };
  Run run = Run::Window;
  std::string text;

  bool windowless = false;  // nobody sees a window: what a box would say goes to the log
  bool demo = false;
  std::filesystem::path input;  // sound file instead of the sound server
  std::string audioDevice;
  std::array<std::string, 2> rigAddresses;  // of rig 1 and 2; empty: as set up
  std::filesystem::path serialPort;         // device of every COM port; empty: as set up
  std::filesystem::path dataFolder;
  std::filesystem::path engineFolder;
  std::string engineTitle;  // of its window; empty: its version text
  std::filesystem::path logFile;
  int seconds = 0;                   // of a headless run
  std::filesystem::path screenshot;  // written at the end of a headless run
  AnalyseOptions analyse;
  std::filesystem::path exportPresets;  // empty: none
  std::filesystem::path importPresets;  // empty: none

  // What is Qt's own, as Qt takes it.
  std::vector<std::string> qtArguments;
  bool namesStyle = false;  // whether they name a style
  std::string platform;     // what they name as the kind of display; empty: nothing
  std::string display;      // what they name as the X server; empty: nothing

  // Such runs keep settings and presets to themselves unless a data folder is named.
  bool KeepsInMemory() const { return (demo || !input.empty()) && dataFolder.empty(); }
};

// `arguments` are those behind the program's name, as TextPath takes them. `versionText` is what
// --version answers.
Options ParseOptions(std::span<const std::string> arguments, const std::string& versionText);

}  // namespace velt
