// Spectrograms as PNG files.
#pragma once

#include "recording/recording_spectrogram.h"

namespace velt {

class OutputFile;

// Fills the opened file and puts it into place. Returns the system's error number, 0 for success.
// Needs a QGuiApplication.
int WriteSpectrogram(const RecordingSpectrogram& spectrogram, OutputFile& file);

class SpectrogramFile : public SpectrogramWriter {
 public:
  int Write(const RecordingSpectrogram& spectrogram, const std::filesystem::path& path) override;
};

}  // namespace velt
