// A spectrogram with what is known of the recording.
#pragma once

#include <filesystem>
#include <string>

#include "spectrum/spectrogram.h"

namespace velt {

struct RecordingSpectrogram {
  std::filesystem::path file;
  std::string length;                // of the whole file: "10:00, 1 channel at 44100 Hz"
  LevelPlot plot;                    // levels of spectrogramFloorDb to 0 dB
  double fromSeconds = 0.0;          // at the plot's left edge
  double toSeconds = 0.0;            // at its right edge
  double topHz = 0.0;                // at its upper edge; 0 at the lower one
  Spectrogram::Strongest strongest;  // its time counts from fromSeconds on
};

// "strongest -12.3 dB at 1000 Hz, 0:12.0", or that there is only silence.
std::string StrongestText(const RecordingSpectrogram& spectrogram);

// Draws a spectrogram with its title and scales and writes it as a PNG file.
class SpectrogramWriter {
 public:
  virtual ~SpectrogramWriter() = default;
  // Takes the place of what is there once it is whole. Returns the system's error number, 0 for
  // success.
  virtual int Write(const RecordingSpectrogram& spectrogram, const std::filesystem::path& path) = 0;
};

}  // namespace velt
