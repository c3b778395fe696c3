// Makes the spectrogram of a recording, a block of sound at a time, for whoever has the time.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "ports/sound_file.h"
#include "recording/recording_spectrogram.h"

namespace velt {

struct SpectrogramWish {
  std::filesystem::path file;
  int width = 1200;  // of the plot in pixels
  int height = 512;
  double fromSeconds = 0.0;              // 0 or more
  std::optional<double> toSeconds = {};  // above fromSeconds; empty or beyond the end: to the end
};

class SpectrogramMaker {
 public:
  explicit SpectrogramMaker(SoundFile& file) : file_(file) {}

  // Returns one line for people when the file cannot be used, empty on success.
  std::string Start(const SpectrogramWish& wish);

  // Goes on by one block; false when nothing is left to do.
  bool Work();

  // What is done, from 0 to 1.
  double Share() const;

  // After Work returned false: why there is no spectrogram; empty when there is one, which Take
  // then gives away.
  const std::string& Failure() const { return failure_; }
  RecordingSpectrogram Take();

 private:
  void Begin();

  SoundFile& file_;
  SpectrogramWish wish_;
  std::array<int16_t, kBlockSamples> block_{};
  RecordingSpectrogram result_;
  std::optional<Spectrogram> spectrogram_;  // once the number of blocks is known
  std::string failure_;
  int64_t blocks_ = 0;  // of the file; counted where it does not tell
  int64_t next_ = 0;    // of the file
  int64_t first_ = 0;   // that is shown
  int64_t end_ = 0;     // behind the last one that is shown
};

}  // namespace velt
