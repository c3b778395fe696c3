// What the user and the layout choose for the analysis, and the numbers derived from it.
#pragma once

#include <cstdint>
#include <optional>

#include "spectrum/colour.h"

namespace velt {

// The engine mode whose plot starts well above 0 Hz and shows half the band.
constexpr int16_t shiftedMode = 69;

// The values of a program that was never set up.
struct AnalysisSettings {
  int16_t zokaMode = 0;   // 0, 1 or shiftedMode; also the pair of bins that the first column shows
  int16_t precision = 1;  // 1 to 4, others count as the nearer of these
  int16_t scaleOffset = 0;  // Hz
  int16_t plotWidth = 524;  // drawable width of the display in pixels
  int32_t plotHeight = 110;
  bool useLines = true;       // bars; otherwise a line
  bool waterfall = false;     // instead of the spectrum
  bool oscillosMode = false;  // the sound's trace over the spectrum
  bool dominantPeak = true;
  int16_t waterSpeed = 3;  // the waterfall moves every waterSpeed + 1 ticks
  int32_t spectrumDivisor = 150;
  int32_t waterfallSensitivity = 50;
  float meterSensitivity = 4.0F;
  float oscillosSensitivity = 1.0F;
  Colour background{6559488};
  Colour trace{16744749};
  Colour passband{16711680};
  Colour oscilloscope{255};
};

// The spectrum's divisor (at least 1) for a slider's value and maximum; empty when the product
// does not fit into 32 bits, then the former divisor stays.
std::optional<int32_t> SpectrumDivisor(int32_t sliderValue, int32_t sliderMax, int32_t sensitivity);

// Pairs of bins (44100 / 1024 Hz each) that a pixel stands for on a display of this width, which
// then always spans the same band. A width below 1 gives 0.
double BinsPerPixel(int32_t drawableWidth);

// The level of a 16-bit sample's amplitude in decibels below full scale; -96 for silence.
double dBFS(int32_t amplitude);

}  // namespace velt
