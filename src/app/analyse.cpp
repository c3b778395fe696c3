#include "app/analyse.h"

#include <QImage>
#include <array>
#include <chrono>
#include <optional>

#include "adapters/files/output_file.h"
#include "adapters/soundfile/sound_file_reader.h"
#include "app/analyse_report.h"
#include "app/console.h"
#include "app/picture_file.h"
#include "app/system.h"
#include "spectrum/analysis.h"
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

std::string TextOf(const SoundFileInfo& info) {
  return "Duration: " + FixedText(info.DurationSeconds(), 3) + " s, " +
         std::to_string(info.channels) + (info.channels == 1 ? " channel" : " channels") + " at " +
         std::to_string(info.rateHz) + " Hz\n";
}

// What the run writes, where it was asked for.
struct ResultFiles {
  std::optional<OutputFile> csv;
  std::optional<OutputFile> image;
};

// Both are opened before the analysis, which can take long. Returns the run's exit code.
int OpenResults(const AnalyseOptions& options, ResultFiles& results) {
  for (const auto& [file, path] :
       {std::pair(&results.csv, &options.csv), std::pair(&results.image, &options.image)}) {
    if (path->empty()) continue;
    if (const int error = file->emplace().Open(*path)) return FailToWrite(*path, error);
  }
  return 0;
}

}  // namespace

int RunAnalyse(const AnalyseOptions& options) {
  SoundFileReader reader;
  const std::string failure = reader.Open(options.file);
  if (!failure.empty()) return Fail(failure);
  NoteInterrupts();
  ResultFiles results;
  if (const int exitCode = OpenResults(options, results)) return exitCode;

  const AnalysisSettings settings = SettingsOf(options);
  WaterPalette palette;
  constexpr int16_t kGrey = 1;
  constexpr int16_t kDefaultClearity = 10;
  palette.InitWaterColor(kGrey, kDefaultClearity);
  AnalysisOutput output;
  if (results.image) output.display.emplace();
  if (results.csv) output.columns.emplace();

  Analyser analyser;
  CsvLine csvLine;
  AnalysisSummary summary;
  ProgressBar progress;
  std::string peakText = "0kc";
  std::array<int16_t, kBlockSamples> block{};
  const double expected =
      reader.Info().DurationSeconds() * kSampleRateHz / static_cast<double>(kBlockSamples);
  const auto begin = std::chrono::steady_clock::now();
  int error = 0;
  bool interrupted = false;
  while (error == 0 && !interrupted && reader.ReadBlock(block)) {
    const Reading reading = analyser.Analyse(block, settings, {}, palette, output);
    summary.Count(reading);
    if (reading.freqDetectText) peakText = *reading.freqDetectText;
    if (results.csv) {
      error =
          results.csv->Write(csvLine.Format(summary.Blocks(), reading, peakText, *output.columns));
    }
    if (summary.Blocks() % 256 != 0) continue;
    progress.Show(static_cast<double>(summary.Blocks()) / expected);
    interrupted = Interrupted();
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  progress.Clear();

  if (const std::string warning = reader.Warning(); !warning.empty()) Warn(warning);
  if (interrupted) return Fail("The analysis was interrupted, nothing was written.");
  if (error == 0 && results.csv) error = results.csv->Commit();
  if (error != 0) return FailToWrite(options.csv, error);
  if (results.image) error = WritePicture(ImageOf(output.display->shown), *results.image);
  if (error != 0) return FailToWrite(options.image, error);
  return Print(TextOf(reader.Info()) + summary.Text(seconds.count()));
}

}  // namespace velt
