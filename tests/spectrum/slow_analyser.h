// The analysis in the slow and obvious way: one statement after the other, a statement that fails
// being skipped.
#pragma once

#include <cmath>
#include <stdexcept>

#include "spectrum/analysis.h"

namespace velt {

class SlowAnalyser {
 public:
  Raster shown, offScreen;  // of the plot's size
  std::string text;
  std::vector<double> columns;
  int32_t dominantFrequency = 0, meter = 0;

  void Tick(std::span<const int16_t, 512> block, const AnalysisSettings& s, const Tuning& tuning,
            const WaterPalette& palette) {
    std::ranges::copy(block, samples_.begin());
    fft_.RunFFT(samples_, real_);
    s_ = s;
    pen_ = s.precision > 1 ? s.precision - 1 : 1;
    shifted_ = s.zokaMode == 69;
    const int step = shifted_ && s.precision <= 2 ? 3 - s.precision : s.precision;
    const double binsPerPixel = 524 * 0.98 / (2.0 * s.plotWidth);
    if (!s.waterfall) DrawGround(tuning.passband);
    float position = s.zokaMode;
    int32_t sum = 0, peakLevel = 0;
    columns.clear();
    for (int x = CLng(s.scaleOffset / (shifted_ ? 20.0 : 40.0)); x <= s.plotWidth; x += step) {
      const double twice = 2.0 * position;
      const int p = CLng(twice), p1 = CLng(twice + 1);
      columns.push_back(NAN);
      Try([&] { columns.back() = M(p) + M(p1); });
      if (!s.waterfall) {
        DrawColumn(x, step, twice);
      } else {
        Try([&] {
          const double quiet = Checked(int64_t{s.waterfallSensitivity} * 3);
          const double added = static_cast<double>(real_.at(p)) + real_.at(p1);
          const int c = CLng(std::fabs(added) / quiet) % 524;
          if (c < 0) throw std::out_of_range("palette");
          shown.SetPixel(x, 0, palette[c]);
        });
      }
      Try([&] {
        const double level = std::sqrt(std::fabs(real_.at(p)));
        if (!s.dominantPeak || peakLevel > level) return;
        peakLevel = CLng(level);
        peakFrequency_ = CLng(std::floor(position * 44100.0) / 1024);
        if (peakFrequency_ >= shownPeak_) {
          Try([&] { text = Text(tuning.rigFrequencyHz); });
          shownPeak_ = peakFrequency_;
        }
        dominantFrequency = 2 * peakFrequency_;
      });
      position = static_cast<float>(position + step * binsPerPixel / (shifted_ ? 2 : 1));
      Try([&] { sum = CLng(sum + std::fabs(static_cast<long double>(real_.at(p))) * step); });
    }
    if (s.waterfall && ++rowCounter_ > s.waterSpeed) {
      shown.ScrollDown();
      rowCounter_ = 0;
    }
    Try([&] { meter = std::abs(CLng(double(sum) * s.meterSensitivity) / s.plotWidth); });
    if (!s.waterfall) shown = offScreen;
    if (++holdCounter_ > 20) shownPeak_ = holdCounter_ = 0;
  }

 private:
  static int32_t Checked(long double value) {
    if (!(value >= INT32_MIN && value <= INT32_MAX)) throw std::overflow_error("32 bits");
    return static_cast<int32_t>(value);
  }
  static int32_t CLng(long double value) { return Checked(std::nearbyint(value)); }
  static void Try(const auto& statement) {
    try {
      statement();
    } catch (const std::exception&) {
    }
  }
  double M(int k) const { return std::sqrt(std::abs(CLng(real_.at(k)) / s_.spectrumDivisor)); }
  std::string Text(int64_t rig) const {
    if (s_.zokaMode == 0) return std::to_string(2 * peakFrequency_) + "Hz";
    const int32_t d = 2 * peakFrequency_ - 12000;
    const std::string tens = "0" + std::to_string(std::abs(d / 100));
    return std::to_string(Checked(rig + d) / 1000) + "." + tens.substr(tens.size() - 2);
  }

  void DrawGround(Passband band) {
    offScreen = Raster(s_.plotWidth, s_.plotHeight, s_.background);
    if (band.lowHz == band.highHz || s_.zokaMode == 0) return;
    const double w = s_.plotWidth, low = band.lowHz, high = band.highHz;
    const int x1 = CLng(shifted_ ? (w / 11500) * (low - 5760) : (w / 10000) * low * 0.45 + 1);
    const int x2 = CLng(shifted_ ? (w / 11500) * (high - 5760) + 1 : (w / 10000) * high * 0.45 + 1);
    for (int x = std::min(x1, x2); x <= std::max(x1, x2); ++x) {
      offScreen.Line(x, 0, x, s_.plotHeight, 1, s_.passband);
    }
  }
  // `first` and `second` give rows, or throw.
  void Draw(bool point, int x1, const auto& first, int x2, const auto& second, Colour colour) {
    if (point) Try([&] { offScreen.Line(x1, first(), x1, first(), pen_, colour); });
    Try([&] { offScreen.Line(x1, first(), x2, second(), pen_, colour); });
  }
  void DrawColumn(int x, int step, double twice) {
    const int p = CLng(twice), p1 = CLng(twice + 1), p2 = CLng(twice + 2);
    const auto here = [&] { return CLng(s_.plotHeight - (M(p) + M(p1))); };
    const auto next = [&] { return CLng(s_.plotHeight - (M(p1) + M(p2))); };
    const auto bottom = [&] { return s_.plotHeight; };
    if (s_.useLines) {
      Draw(false, x, here, x, bottom, s_.trace);
    } else {
      Draw(!shifted_, x, here, shifted_ ? x + 1 : x, next, s_.trace);
    }
    const auto sound = [&](double a, double b) {
      return [=, this] {
        const double sum = samples_.at(CLng(a)) / 512.0 + samples_.at(CLng(b)) / 512.0;
        return CLng(s_.plotHeight / 2.0 - sum * s_.oscillosSensitivity - 3);
      };
    };
    for (int n = 0; s_.oscillosMode && n <= (step > 1 ? step : 0); ++n) {
      Draw(step == 1, x + n, sound(twice + n, twice + 1), x, sound(twice + 1, twice + 2),
           s_.oscilloscope);
    }
  }

  Fft fft_;
  AnalysisSettings s_;
  std::array<int16_t, 1024> samples_{};
  std::array<float, 1024> real_{};
  bool shifted_ = false;
  int pen_ = 1;
  int32_t peakFrequency_ = 0, shownPeak_ = 0, rowCounter_ = 0, holdCounter_ = 0;
};

}  // namespace velt
