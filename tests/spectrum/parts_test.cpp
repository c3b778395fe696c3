// The small parts of the analysis: colours, palette, raster, derived settings.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "spectrum/analysis_settings.h"
#include "spectrum/bulk_rounding.h"
#include "spectrum/palette.h"
#include "spectrum/raster.h"
#include "text/numbers.h"

namespace velt {
namespace {

TEST(Colour, RedIsInTheLowByteAndSystemColoursAreTold) {
  EXPECT_EQ(Colour(0x00804020).Argb(), 0xFF204080U);
  EXPECT_EQ(Colour(255).Argb(), 0xFFFF0000U);
  EXPECT_EQ(SystemColourIndex(-2147483633), 15);
  EXPECT_FALSE(SystemColourIndex(0x00FFFFFF));
}

TEST(WaterPalette, SchemesAndBrightness) {
  struct Case {
    int16_t scheme;
    int16_t clearity;
    int entry;
    uint32_t argb;
  };
  const Case cases[] = {
      {0, 0, 100, 0xFF320032},  {0, 10, 254, 0xFF890A89},  {0, 0, 255, 0xFFFF003F},
      {0, 0, 400, 0xFFFF9164},  {1, 0, 511, 0xFFFFFFFF},   {1, 0, 509, 0xFFFEFEFE},
      {1, -20, 30, 0xFF000000}, {2, 5, 101, 0xFF6A3737},   {3, 5, 101, 0xFF376A37},
      {4, 5, 101, 0xFF37376A},  {4, 300, 0, 0xFFFFFFFF},   {0, 300, 0, 0xFFFFFFFF},
      {5, 0, 0, 0xFF000000},    {5, 300, 131, 0xFF0000FF}, {5, 300, 262, 0xFF00FF00},
      {5, 0, 393, 0xFFFF0000},  {5, 0, 524, 0xFF0000FF},   {5, 0, 65, 0xFF0000B4},
      {5, 0, 330, 0xFFB8B100},
  };
  for (const Case& c : cases) {
    WaterPalette palette;
    palette.InitWaterColor(c.scheme, c.clearity);
    EXPECT_EQ(palette[c.entry].Argb(), c.argb) << c.scheme << " " << c.entry;
    palette.InitWaterColor(6, 100);
    EXPECT_EQ(palette[c.entry].Argb(), c.argb) << "an unknown scheme changes nothing";
  }
  EXPECT_EQ(PaletteValue(-5, 524), Colour());
  EXPECT_EQ(PaletteValue(5, 0), Colour());
}

TEST(DerivedSettings, DivisorScaleAndLevel) {
  EXPECT_EQ(SpectrumDivisor(15, 100, 10), 150);
  EXPECT_EQ(SpectrumDivisor(1, 100, 10), 10);
  EXPECT_EQ(SpectrumDivisor(0, 100, 10), 1);
  EXPECT_EQ(SpectrumDivisor(100, 100, -3), 1);
  EXPECT_EQ(SpectrumDivisor(32768, 100, 10), 1) << "the position wraps in 16 bits";
  EXPECT_EQ(SpectrumDivisor(100, 100, 30000000), std::nullopt);
  EXPECT_DOUBLE_EQ(BinsPerPixel(524), 0.49);
  EXPECT_DOUBLE_EQ(BinsPerPixel(1048), 0.245);
  EXPECT_DOUBLE_EQ(dBFS(0), -96.0);
  EXPECT_DOUBLE_EQ(dBFS(-32768), 0.0);
  EXPECT_NEAR(dBFS(16384), -6.0206, 1e-4);
}

TEST(BulkRounding, IsTheProgramsRounding) {
  std::mt19937 random(3);
  for (int i = 0; i < 200000; ++i) {
    const double value = (static_cast<double>(random()) - 2147483648.0) / 4.0 / (1 + random() % 9);
    ASSERT_EQ(NearestWhole(value), RoundHalfEven(value)) << value;
  }
}

TEST(Raster, NothingIsDrawnOutsideAndAClippedLineKeepsItsPoints) {
  const Colour ink(255);
  std::mt19937 random(5);
  const auto coordinate = [&random](int spread) {
    return static_cast<int>(random() % static_cast<unsigned>(2 * spread)) - spread;
  };
  for (int i = 0; i < 800; ++i) {
    const int spread = i % 2 == 0 ? 60 : 300;
    const int x1 = coordinate(spread), y1 = coordinate(spread);
    const int x2 = coordinate(spread), y2 = coordinate(spread);
    // The small picture is a window into the large one, in which nothing is clipped.
    Raster small(40, 30);
    Raster large(640, 640);
    small.Line(x1, y1, x2, y2, 1 + i % 3, ink);
    large.Line(x1 + 310, y1 + 310, x2 + 310, y2 + 310, 1 + i % 3, ink);
    for (int y = 0; y < 30; ++y) {
      ASSERT_TRUE(std::ranges::equal(small.Row(y), large.Row(y + 310).subspan(310, 40)))
          << x1 << "," << y1 << " " << x2 << "," << y2;
    }
  }
  Raster raster(8, 4);
  raster.Line(2, -2000000000, 2, 2000000000, 1, ink);
  raster.Line(-1000000, 1, 1000000000, 1, 1, ink);
  for (const auto& [x, y] : {std::pair(-1, 0), {8, 0}, {0, -1}, {0, 4}}) raster.SetPixel(x, y, ink);
  EXPECT_EQ(std::ranges::count(raster.Pixels(), ink.Argb()), 0);
  raster.Line(5, -500000000, 5, 500000000, 2, ink);
  EXPECT_EQ(std::ranges::count(raster.Pixels(), ink.Argb()), 8);
  EXPECT_EQ(raster.Row(0)[4], ink.Argb());
}

}  // namespace
}  // namespace velt
