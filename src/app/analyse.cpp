#include "app/analyse.h"

#include <QImage>
#include <array>
#include <chrono>
#include <cstdio>

#include "adapters/soundfile/sound_file_reader.h"
#include "app/analyse_report.h"
#include "form/main_form.h"
#include "spectrum/analysis.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {
namespace {

int Fail(const std::string& text) {
  std::fprintf(stderr, "velt-sa: %s\n", text.c_str());
  return 1;
}

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

int WriteImage(const Raster& shown, const std::filesystem::path& path) {
  const QImage image(reinterpret_cast<const uchar*>(shown.Pixels().data()), shown.Width(),
                     shown.Height(), qsizetype{4} * shown.Width(), QImage::Format_RGB32);
  if (image.save(QString::fromStdString(PathText(path)), "PNG")) return 0;
  return Fail("The picture could not be written to " + PathText(path) + ".");
}

void PrintSummary(const SoundFileInfo& info, int64_t blocks, double seconds,
                  const StrongestFrequencies& strongest) {
  const double analysed = static_cast<double>(blocks) * kBlockSamples / kSampleRateHz;
  std::printf("Duration: %.3f s, %d channel%s at %d Hz\n", info.DurationSeconds(), info.channels,
              info.channels == 1 ? "" : "s", info.rateHz);
  std::printf("Blocks: %lld\n", static_cast<long long>(blocks));
  std::printf("Speed: %.0f times real time\n", analysed / std::max(seconds, 1e-9));
  std::printf("Strongest frequencies:");
  for (const auto& [frequencyHz, count] : strongest.Top(5)) {
    std::printf(" %d Hz (%.0f %%)", frequencyHz,
                100.0 * static_cast<double>(count) / static_cast<double>(blocks));
  }
  std::printf("\n");
}

}  // namespace

int RunAnalyse(const AnalyseOptions& options) {
  SoundFileReader reader;
  const std::string failure = reader.Open(options.file);
  if (!failure.empty()) return Fail(failure);

  CsvWriter csv;
  if (!options.csv.empty()) {
    if (const int error = csv.Open(options.csv)) {
      return Fail(PathText(options.csv) + " could not be written: " + ErrorText(error));
    }
  }
  const AnalysisSettings settings = SettingsOf(options);
  WaterPalette palette;
  constexpr int16_t kGrey = 1;
  constexpr int16_t kDefaultClearity = 10;
  palette.InitWaterColor(kGrey, kDefaultClearity);
  AnalysisOutput output;
  if (!options.image.empty()) output.display.emplace();
  if (!options.csv.empty()) output.columns.emplace();

  Analyser analyser;
  StrongestFrequencies strongest;
  ProgressBar progress;
  std::string peakText = "0kc";
  std::array<int16_t, kBlockSamples> block{};
  const double expected =
      reader.Info().DurationSeconds() * kSampleRateHz / static_cast<double>(kBlockSamples);
  int64_t blocks = 0;
  const auto begin = std::chrono::steady_clock::now();
  while (reader.ReadBlock(block)) {
    const Reading reading = analyser.Analyse(block, settings, {}, palette, output);
    ++blocks;
    if (reading.freqDetectText) peakText = *reading.freqDetectText;
    if (output.columns) csv.Write(blocks, reading, peakText, *output.columns);
    strongest.Count(reading.dominantFrequencyHz);
    if (blocks % 256 == 0) progress.Show(static_cast<double>(blocks) / expected);
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;

  if (const std::string warning = reader.Warning(); !warning.empty()) {
    std::fprintf(stderr, "velt-sa: %s\n", warning.c_str());
  }
  if (const int error = csv.Close()) {
    return Fail(PathText(options.csv) + " could not be written: " + ErrorText(error));
  }
  if (output.display && WriteImage(output.display->shown, options.image) != 0) return 1;
  PrintSummary(reader.Info(), blocks, seconds.count(), strongest);
  return 0;
}

}  // namespace velt
