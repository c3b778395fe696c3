// The loops of the transform, written once over a `Vector` policy that names an instruction set's
// operations. Each source file that includes this is compiled for its own instruction set, so
// everything here has internal linkage and uses no inline function of the standard library:
// the linker could otherwise keep a copy that the processor at hand does not know.
//
// Why doubles give the bits that extended precision gives: the product of two singles is exact in
// both. Only the sum of the two products is rounded, and then rounded again to single. The second
// rounding tells the two apart in one case alone, when the double lies exactly halfway between two
// singles and the sum did not. Those halfway doubles are looked for, and the few found are done
// again in extended precision. Sums of two singles come out the same in either.
#pragma once

#include "spectrum/fft_kernels.h"

namespace velt {
namespace {

static_assert(__LDBL_MANT_DIG__ == 64, "the transform is defined through 80-bit long doubles");

// A vector of twiddles: consecutive ones (step 1) or one for all lanes (step 0).
template <int kStep>
struct Twiddles {
  const double* cosine;
  const double* sine;
};

template <class Vector>
struct Complex {
  typename Vector::Singles real;
  typename Vector::Singles imaginary;
};

template <class Vector, int kStep>
[[gnu::noinline, gnu::cold]] Complex<Vector> RotateExtended(typename Vector::Singles real,
                                                            typename Vector::Singles imaginary,
                                                            Twiddles<kStep> twiddles) {
  float re[Vector::kLanes];
  float im[Vector::kLanes];
  Vector::Store(re, real);
  Vector::Store(im, imaginary);
  for (int lane = 0; lane < Vector::kLanes; ++lane) {
    const long double x = re[lane];
    const long double y = im[lane];
    const long double c = twiddles.cosine[lane * kStep];
    const long double s = twiddles.sine[lane * kStep];
    re[lane] = static_cast<float>(x * c - y * s);
    im[lane] = static_cast<float>(x * s + y * c);
  }
  return {Vector::Load(re), Vector::Load(im)};
}

// TempR and TempI of a vector of butterflies; x and y are the parts of `value` as doubles.
template <class Vector, int kStep>
[[gnu::always_inline]] inline Complex<Vector> Rotate(Complex<Vector> value,
                                                     typename Vector::Doubles x,
                                                     typename Vector::Doubles y,
                                                     Twiddles<kStep> twiddles) {
  const auto c = Vector::template LoadDoubles<kStep>(twiddles.cosine);
  const auto s = Vector::template LoadDoubles<kStep>(twiddles.sine);
  const auto real = Vector::ProductDifference(x, c, y, s);
  const auto imaginary = Vector::ProductSum(x, s, y, c);
  if (Vector::AnyHalfway(real, imaginary)) [[unlikely]] {
    return RotateExtended<Vector>(value.real, value.imaginary, twiddles);
  }
  return {Vector::Narrow(real), Vector::Narrow(imaginary)};
}

template <class Vector>
[[gnu::always_inline]] inline void Butterfly(Complex<Vector>& upper, Complex<Vector>& partner,
                                             Complex<Vector> temp) {
  partner.real = upper.real - temp.real;
  partner.imaginary = upper.imaginary - temp.imaginary;
  upper.real = upper.real + temp.real;
  upper.imaginary = upper.imaginary + temp.imaginary;
}

// One stage of kLanes groups side by side: lane l of values[m] is element m of the l-th group.
template <class Vector, int kHalf>
[[gnu::always_inline]] inline void StageAcross(const FftTables& tables,
                                               Complex<Vector> (&values)[Vector::kLanes]) {
  for (int butterfly = 0; butterfly < Vector::kLanes / 2; ++butterfly) {
    const int n = butterfly % kHalf;
    Complex<Vector>& upper = values[2 * butterfly - n];
    Complex<Vector>& partner = values[2 * butterfly - n + kHalf];
    Complex<Vector> temp = partner;
    // Elements 0 and H/2 of a half group are still real here, with an imaginary part of +0: one
    // product is left, which single precision rounds correctly at once.
    if (2 * n == kHalf) {
      const auto c = Vector::Broadcast(static_cast<float>(tables.cosine[kHalf + n]));
      const auto s = Vector::Broadcast(static_cast<float>(tables.sine[kHalf + n]));
      temp.real = partner.real * c - partner.imaginary * s;
      temp.imaginary = partner.real * s + partner.imaginary * c;
    } else if (n != 0) {
      temp = Rotate<Vector>(partner, Vector::Widen(partner.real), Vector::Widen(partner.imaginary),
                            Twiddles<0>{tables.cosine + kHalf + n, tables.sine + kHalf + n});
    }
    Butterfly<Vector>(upper, partner, temp);
  }
}

// The stages with groups of at most kLanes values, for the kLanes groups that start at the indices
// bitReverse[first + l]: their elements m are neighbours among the samples.
template <class Vector>
[[gnu::always_inline]] inline void FirstStages(const FftTables& tables, const int16_t* samples,
                                               int first, float* real, float* imaginary) {
  constexpr int kLanes = Vector::kLanes;
  Complex<Vector> values[kLanes];
  for (int m = 0; m < kLanes; ++m) {
    values[m] = {Vector::LoadSamples(samples + tables.bitReverse[m] + first), Vector::Broadcast(0)};
  }
  StageAcross<Vector, 1>(tables, values);
  StageAcross<Vector, 2>(tables, values);
  if constexpr (kLanes == 8) StageAcross<Vector, 4>(tables, values);

  typename Vector::Singles rows[kLanes];
  for (int m = 0; m < kLanes; ++m) rows[m] = values[m].real;
  Vector::Transpose(rows);
  for (int l = 0; l < kLanes; ++l) Vector::Store(real + tables.bitReverse[first + l], rows[l]);
  for (int m = 0; m < kLanes; ++m) rows[m] = values[m].imaginary;
  Vector::Transpose(rows);
  for (int l = 0; l < kLanes; ++l) Vector::Store(imaginary + tables.bitReverse[first + l], rows[l]);
}

template <class Vector>
[[gnu::always_inline]] inline void Stage(const FftTables& tables, int half, float* real,
                                         float* imaginary) {
  for (int start = 0; start < kFftSize; start += 2 * half) {
    for (int n = 0; n < half; n += Vector::kLanes) {
      const int j = start + n;
      const int k = j + half;
      Complex<Vector> upper{Vector::Load(real + j), Vector::Load(imaginary + j)};
      Complex<Vector> partner{Vector::Load(real + k), Vector::Load(imaginary + k)};
      Butterfly<Vector>(
          upper, partner,
          Rotate<Vector>(partner, Vector::LoadWide(real + k), Vector::LoadWide(imaginary + k),
                         Twiddles<1>{tables.cosine + half + n, tables.sine + half + n}));
      Vector::Store(real + j, upper.real);
      Vector::Store(imaginary + j, upper.imaginary);
      Vector::Store(real + k, partner.real);
      Vector::Store(imaginary + k, partner.imaginary);
    }
  }
}

template <class Vector>
[[gnu::always_inline]] inline void Transform(const FftTables& tables, const int16_t* samples,
                                             float* real, float* imaginary) {
  for (int first = 0; first < kFftSize / Vector::kLanes; first += Vector::kLanes) {
    FirstStages<Vector>(tables, samples, first, real, imaginary);
  }
  for (int half = Vector::kLanes; half < kFftSize; half *= 2) {
    Stage<Vector>(tables, half, real, imaginary);
  }
}

}  // namespace
}  // namespace velt
