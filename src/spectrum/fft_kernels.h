// The transform's inner loops, one function for each instruction set. They differ in speed alone:
// every one gives the same bits.
#pragma once

#include <cstdint>

namespace velt {

inline constexpr int kFftSize = 1024;

// What the loops read, built once. The twiddles of the stage with half size H stand at H + n for
// n = 0 to H - 1; each is a single, kept as a double because the products are formed in double.
struct FftTables {
  int32_t bitReverse[kFftSize];
  alignas(64) double cosine[kFftSize];
  alignas(64) double sine[kFftSize];
};

// Transforms kFftSize samples. `real` and `imaginary` hold kFftSize singles each, any alignment,
// and overlap neither each other nor the samples.
using FftKernel = void (*)(const FftTables& tables, const int16_t* samples, float* real,
                           float* imaginary);

void TransformBaseline(const FftTables& tables, const int16_t* samples, float* real,
                       float* imaginary);
void TransformAvx2(const FftTables& tables, const int16_t* samples, float* real, float* imaginary);

}  // namespace velt
