#include "app/analyse.h"

#include <QImage>
#include <chrono>
#include <optional>

#include "adapters/files/output_file.h"
#include "adapters/soundfile/sound_file_reader.h"
#include "app/analyse_report.h"
#include "app/console.h"
#include "app/look_ahead.h"
#include "app/picture_file.h"
#include "app/picture_text.h"
#include "app/spectrogram_file.h"
#include "app/system.h"
#include "recording/spectrogram_maker.h"
#include "spectrum/analysis.h"
#include "spectrum/scale_ticks.h"
#include "text/formats.h"

namespace velt {
namespace {

// The default settings with what the command line says.
AnalysisSettings SettingsOf(const AnalyseOptions& options) {
  AnalysisSettings settings;
  settings.zokaMode = static_cast<int16_t>(options.mode);
  settings.precision = static_cast<int16_t>(options.precision);
  settings.waterfall = options.waterfall;
  settings.plotWidth = static_cast<int16_t>(options.width);
  settings.plotHeight = options.height;
  constexpr int32_t kSliderMaximum = 100;
  constexpr int32_t kDefaultSensitivity = 10;
  if (const auto divisor = SpectrumDivisor(options.slider, kSliderMaximum, kDefaultSensitivity)) {
    settings.spectrumDivisor = *divisor;
  }
  return settings;
}

QImage ImageOf(const Raster& shown) {
  return QImage(reinterpret_cast<const uchar*>(shown.Pixels().data()), shown.Width(),
                shown.Height(), qsizetype{4} * shown.Width(), QImage::Format_RGB32);
}

constexpr int64_t kBlocksBetweenLooks = 256;

int TellInterrupted() {
  return Fail("The analysis was interrupted, nothing was written.");
}

std::string TextOf(const RecordingSpectrogram& spectrogram) {
  return "Spectrogram: " + TimeText(spectrogram.fromSeconds, 3) + " to " +
         TimeText(spectrogram.toSeconds, 3) + ", " + StrongestText(spectrogram) + "\n";
}

std::string TextOf(const SoundFileInfo& info) {
  constexpr double kAbsurd = 1e9;
  const double seconds = info.DurationSeconds();
  return "Duration: " + (seconds < kAbsurd ? FixedText(seconds, 3) + " s, " : "not told, ") +
         std::to_string(info.channels) + (info.channels == 1 ? " channel" : " channels") + " at " +
         std::to_string(info.rateHz) + " Hz\n";
}

// How many of the last blocks the picture is made of. The spectrum is drawn anew with each; a row
// of the waterfall is what the last block before it moved has left in the top one.
size_t BlocksInPicture(const AnalysisSettings& settings) {
  if (!settings.waterfall) return 1;
  return static_cast<size_t>(settings.plotHeight) * static_cast<size_t>(settings.waterSpeed + 1);
}

// What the run writes, where it was asked for.
struct ResultFiles {
  std::optional<OutputFile> csv;
  std::optional<OutputFile> image;
  std::optional<OutputFile> spectrogram;
};

// All are opened before the analysis, which can take long. Returns the run's exit code.
int OpenResults(const AnalyseOptions& options, ResultFiles& results) {
  for (const auto& [file, path] :
       {std::pair(&results.csv, &options.csv), std::pair(&results.image, &options.image),
        std::pair(&results.spectrogram, &options.spectrogram)}) {
    if (path->empty()) continue;
    if (const int error = file->emplace().Open(*path)) {
      return Interrupted() ? TellInterrupted() : FailToWrite(*path, error);
    }
  }
  return 0;
}

class AnalyseRun {
 public:
  explicit AnalyseRun(const AnalyseOptions& options) : options_(options) {}
  int Run();

 private:
  // Each returns the run's exit code.
  int Analyse(SoundFile& file);
  int MakeSpectrogram(SoundFile& file);
  int WriteResults();
  bool GoesOn(double share);

  const AnalyseOptions& options_;
  ResultFiles results_;
  AnalysisOutput output_;
  std::optional<RecordingSpectrogram> spectrogram_;
  std::string report_;
  ProgressBar progress_;
};

int AnalyseRun::Run() {
  SoundFileReader reader;
  const std::string failure = reader.Open(options_.file);
  if (!failure.empty()) return Fail(failure);
  NoteInterrupts();
  if (const int exitCode = OpenResults(options_, results_)) return exitCode;
  // What is told of the blocks takes as long as the spectrogram itself.
  const bool analyses = results_.csv || results_.image || !results_.spectrogram;
  if (analyses) {
    if (const int exitCode = Analyse(reader)) return exitCode;
  }
  if (results_.spectrogram) {
    if (const int exitCode = MakeSpectrogram(reader)) return exitCode;
  }
  progress_.Clear();
  if (const std::string warning = reader.Warning(); !warning.empty()) Warn(warning);
  if (const int exitCode = WriteResults()) return exitCode;
  return Print(TextOf(reader.Info()) + report_);
}

int AnalyseRun::Analyse(SoundFile& file) {
  const AnalysisSettings settings = SettingsOf(options_);
  WaterPalette palette;
  constexpr int16_t kGrey = 1;
  constexpr int16_t kDefaultClearity = 10;
  palette.InitWaterColor(kGrey, kDefaultClearity);
  if (results_.csv) output_.columns.emplace();

  Analyser analyser;
  CsvLine csvLine;
  AnalysisSummary summary;
  std::string peakText = "0kc";
  LookAhead blocks(file, results_.image ? BlocksInPicture(settings) : 0);
  const double expected =
      file.Info().DurationSeconds() * kSampleRateHz / static_cast<double>(kBlockSamples);
  const auto begin = std::chrono::steady_clock::now();
  while (const LookAhead::Block* block = blocks.Next()) {
    // What has gone out of the picture at the end need not be drawn.
    if (blocks.AmongLast() && !output_.display) output_.display.emplace();
    const Reading reading = analyser.Analyse(*block, settings, {}, palette, output_);
    summary.Count(reading);
    if (reading.freqDetectText) peakText = *reading.freqDetectText;
    if (results_.csv) {
      const int error = results_.csv->Write(
          csvLine.Format(summary.Blocks(), reading, peakText, *output_.columns));
      if (error != 0) return FailToWrite(options_.csv, error);
    }
    if (summary.Blocks() % kBlocksBetweenLooks != 0) continue;
    if (!GoesOn(static_cast<double>(summary.Blocks()) / expected)) return TellInterrupted();
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  report_ += summary.Text(seconds.count());
  return 0;
}

int AnalyseRun::MakeSpectrogram(SoundFile& file) {
  SpectrogramMaker maker(file);
  const std::string failure = maker.Start({.file = options_.file,
                                           .width = options_.plotWidth,
                                           .height = options_.plotHeight,
                                           .fromSeconds = options_.fromSeconds,
                                           .toSeconds = options_.toSeconds});
  if (!failure.empty()) return Fail(failure);
  for (int64_t blocks = 1; maker.Work(); ++blocks) {
    if (blocks % kBlocksBetweenLooks == 0 && !GoesOn(maker.Share())) return TellInterrupted();
  }
  progress_.Clear();
  if (!maker.Failure().empty()) return Fail(maker.Failure());
  spectrogram_ = maker.Take();
  report_ += TextOf(*spectrogram_);
  return 0;
}

bool AnalyseRun::GoesOn(double share) {
  progress_.Show(share);
  if (!Interrupted()) return true;
  progress_.Clear();
  return false;
}

int AnalyseRun::WriteResults() {
  if (results_.csv) {
    if (const int error = results_.csv->Commit()) return FailToWrite(options_.csv, error);
  }
  if (results_.image) {
    const int error = WritePicture(ImageOf(output_.display->shown), *results_.image);
    if (error != 0) return FailToWrite(options_.image, error);
  }
  if (results_.spectrogram) {
    const PictureText text;
    if (const int error = WriteSpectrogram(*spectrogram_, *results_.spectrogram)) {
      return FailToWrite(options_.spectrogram, error);
    }
  }
  return 0;
}

}  // namespace

int RunAnalyse(const AnalyseOptions& options) {
  return AnalyseRun(options).Run();
}

}  // namespace velt
