#include "app/analyse.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <QImage>
#include <random>

#include "spectrum/analysis.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

// Noise, louder and softer from block to block.
std::vector<int16_t> Noise(int blocks) {
  std::mt19937 random(7);
  std::vector<int16_t> samples;
  for (int i = 0; i < blocks; ++i) {
    const int most = 1 << (3 + random() % 11);
    for (int k = 0; k < 512; ++k) {
      samples.push_back(static_cast<int16_t>(static_cast<int>(random() % (2 * most)) - most));
    }
  }
  return samples;
}

TEST(Analyse, ThePictureIsWhatDrawingEveryBlockLeaves) {
  const TempFolder folder;
  for (const auto& [blocks, waterfall, width, height] : {std::tuple{500, true, 524, 16},
                                                         {3, true, 524, 16},
                                                         {257, true, 300, 40},
                                                         {501, false, 524, 110}}) {
    const std::vector<int16_t> samples = Noise(blocks);
    AnalyseOptions options;
    options.file = folder / "noise.wav";
    options.image = folder / "o.png";
    options.waterfall = waterfall;
    options.width = width;
    options.height = height;
    options.precision = 3;
    options.mode = 69;
    SF_INFO info{0, 44100, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, 0};
    SNDFILE* sound = sf_open(options.file.c_str(), SFM_WRITE, &info);
    sf_write_short(sound, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(sound);
    ASSERT_EQ(RunAnalyse(options), 0);

    AnalysisSettings settings;
    settings.zokaMode = 69;
    settings.precision = 3;
    settings.waterfall = waterfall;
    settings.plotWidth = static_cast<int16_t>(width);
    settings.plotHeight = height;
    WaterPalette palette;
    palette.InitWaterColor(1, 10);
    AnalysisOutput output;
    output.display.emplace();
    Analyser analyser;
    for (size_t at = 0; at < samples.size(); at += 512) {
      const auto block = std::span(samples).subspan(at).first<512>();
      analyser.Analyse(block, settings, {}, palette, output);
    }
    const Raster& shown = output.display->shown;
    const QImage picture = QImage(QString::fromStdString(options.image.string()))
                               .convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(picture.size(), QSize(width, height));
    for (int y = 0; y < height; ++y) {
      const auto* pixels = reinterpret_cast<const uint32_t*>(picture.constScanLine(y));
      ASSERT_TRUE(std::equal(pixels, pixels + width, shown.Row(y).begin())) << y;
    }
  }
}

}  // namespace
}  // namespace velt
