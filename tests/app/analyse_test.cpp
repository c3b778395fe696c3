#include "app/analyse.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <QImage>
#include <algorithm>
#include <random>

#include "spectrum/analysis.h"
#include "support/temp_folder.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

TEST(Analyse, ThePictureIsWhatDrawingEveryBlockLeaves) {
  const TempFolder folder;
  std::mt19937 random(7);
  AnalyseOptions options;
  options.file = folder / "noise.wav";
  options.image = folder / "o.png";
  AnalysisSettings settings;
  options.mode = settings.zokaMode = 69;
  options.precision = settings.precision = 3;
  for (const auto& [blocks, waterfall, width, height] : {std::tuple{500, true, 524, 16},
                                                         {3, true, 524, 16},
                                                         {257, true, 300, 40},
                                                         {501, false, 524, 110}}) {
    std::vector<int16_t> samples(static_cast<size_t>(blocks) * 512);
    std::ranges::generate(samples, [&random] { return static_cast<int16_t>(random() % 4096); });
    SF_INFO info{0, 44100, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, 0};
    SNDFILE* sound = sf_open(options.file.c_str(), SFM_WRITE, &info);
    sf_write_short(sound, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(sound);
    options.waterfall = settings.waterfall = waterfall;
    options.width = settings.plotWidth = static_cast<int16_t>(width);
    options.height = settings.plotHeight = height;
    ASSERT_EQ(RunAnalyse(options), 0);

    WaterPalette palette;
    palette.InitWaterColor(1, 10);
    AnalysisOutput output{Display(), {}};
    Analyser analyser;
    for (size_t at = 0; at < samples.size(); at += 512) {
      const auto block = std::span(samples).subspan(at).first<512>();
      analyser.Analyse(block, settings, {}, palette, output);
    }
    const auto* const pixels = output.display->shown.Pixels().data();
    EXPECT_EQ(QImage(ToQt(options.image.string())).convertToFormat(QImage::Format_RGB32),
              QImage(reinterpret_cast<const uchar*>(pixels), width, height, QImage::Format_RGB32));
  }
}

}  // namespace
}  // namespace velt
