// The transform for processors with AVX2 and FMA: 8 singles or 4 doubles to the vector.
#include <immintrin.h>

#include "spectrum/fft_loops.h"

namespace velt {
namespace {

struct Avx2 {
  static constexpr int kLanes = 8;
  using Singles = __m256;
  struct Doubles {
    __m256d low, high;
  };

  static Singles Load(const float* from) { return _mm256_loadu_ps(from); }
  static void Store(float* to, Singles v) { _mm256_storeu_ps(to, v); }
  static Singles Broadcast(float v) { return _mm256_set1_ps(v); }

  static Singles LoadSamples(const int16_t* from) {
    const __m128i packed = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    return _mm256_cvtepi32_ps(_mm256_cvtepi16_epi32(packed));
  }

  template <int kStep>
  static Doubles LoadDoubles(const double* from) {
    if constexpr (kStep == 0) return {_mm256_set1_pd(*from), _mm256_set1_pd(*from)};
    return {_mm256_loadu_pd(from), _mm256_loadu_pd(from + 4)};
  }

  static Doubles Widen(Singles v) {
    return {_mm256_cvtps_pd(_mm256_castps256_ps128(v)),
            _mm256_cvtps_pd(_mm256_extractf128_ps(v, 1))};
  }
  static Doubles LoadWide(const float* p) {
    return {_mm256_cvtps_pd(_mm_loadu_ps(p)), _mm256_cvtps_pd(_mm_loadu_ps(p + 4))};
  }
  static Singles Narrow(Doubles v) {
    return _mm256_set_m128(_mm256_cvtpd_ps(v.high), _mm256_cvtpd_ps(v.low));
  }

  // The first product is exact, so fusing it with the sum leaves the one rounding there was.
  static Doubles ProductDifference(Doubles a, Doubles b, Doubles c, Doubles d) {
    return {_mm256_fmsub_pd(a.low, b.low, _mm256_mul_pd(c.low, d.low)),
            _mm256_fmsub_pd(a.high, b.high, _mm256_mul_pd(c.high, d.high))};
  }
  static Doubles ProductSum(Doubles a, Doubles b, Doubles c, Doubles d) {
    return {_mm256_fmadd_pd(a.low, b.low, _mm256_mul_pd(c.low, d.low)),
            _mm256_fmadd_pd(a.high, b.high, _mm256_mul_pd(c.high, d.high))};
  }

  // Of a double's 52 bits a single keeps 23; halfway means that the 29 others are 1000...
  // Shifted left by 3 that is the smallest of all 32-bit numbers.
  static __m256i Shifted(Doubles v) {
    const __m256 lowWords = _mm256_shuffle_ps(_mm256_castpd_ps(v.low), _mm256_castpd_ps(v.high),
                                              _MM_SHUFFLE(2, 0, 2, 0));
    return _mm256_slli_epi32(_mm256_castps_si256(lowWords), 3);
  }
  static bool AnyHalfway(Doubles a, Doubles b) {
    const __m256i smallest = _mm256_min_epi32(Shifted(a), Shifted(b));
    return _mm256_movemask_epi8(_mm256_cmpeq_epi32(smallest, _mm256_set1_epi32(INT32_MIN))) != 0;
  }

  static void Transpose(Singles (&rows)[kLanes]) {
    Singles pairs[kLanes];
    for (int i = 0; i < kLanes; i += 4) {
      const Singles a = _mm256_unpacklo_ps(rows[i], rows[i + 1]);
      const Singles b = _mm256_unpackhi_ps(rows[i], rows[i + 1]);
      const Singles c = _mm256_unpacklo_ps(rows[i + 2], rows[i + 3]);
      const Singles d = _mm256_unpackhi_ps(rows[i + 2], rows[i + 3]);
      pairs[i] = _mm256_shuffle_ps(a, c, _MM_SHUFFLE(1, 0, 1, 0));
      pairs[i + 1] = _mm256_shuffle_ps(a, c, _MM_SHUFFLE(3, 2, 3, 2));
      pairs[i + 2] = _mm256_shuffle_ps(b, d, _MM_SHUFFLE(1, 0, 1, 0));
      pairs[i + 3] = _mm256_shuffle_ps(b, d, _MM_SHUFFLE(3, 2, 3, 2));
    }
    for (int i = 0; i < 4; ++i) {
      rows[i] = _mm256_permute2f128_ps(pairs[i], pairs[i + 4], 0x20);
      rows[i + 4] = _mm256_permute2f128_ps(pairs[i], pairs[i + 4], 0x31);
    }
  }
};

}  // namespace

void TransformAvx2(const FftTables& tables, const int16_t* samples, float* real, float* imaginary) {
  Transform<Avx2>(tables, samples, real, imaginary);
}

}  // namespace velt
