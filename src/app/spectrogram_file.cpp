#include "app/spectrogram_file.h"

#include <QImage>

#include "adapters/files/output_file.h"
#include "app/picture_file.h"
#include "ui/spectrogram_picture.h"

namespace velt {

int WriteSpectrogram(const RecordingSpectrogram& spectrogram, OutputFile& file) {
  const LevelPlot& plot = spectrogram.plot;
  return WritePicture(DrawSpectrogram(spectrogram, {plot.Width(), plot.Height()}), file,
                      PngEffort::Little);
}

int SpectrogramFile::Write(const RecordingSpectrogram& spectrogram,
                           const std::filesystem::path& path) {
  OutputFile file;
  const int error = file.Open(path);
  return error != 0 ? error : WriteSpectrogram(spectrogram, file);
}

}  // namespace velt
