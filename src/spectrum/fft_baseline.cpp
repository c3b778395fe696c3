// The transform for every x86-64 processor: 4 singles or 2 doubles to the vector.
#include <emmintrin.h>

#include "spectrum/fft_loops.h"

namespace velt {
namespace {

struct Sse2 {
  static constexpr int kLanes = 4;
  using Singles = __m128;
  struct Doubles {
    __m128d low, high;
  };

  static Singles Load(const float* from) { return _mm_loadu_ps(from); }
  static void Store(float* to, Singles v) { _mm_storeu_ps(to, v); }
  static Singles Broadcast(float v) { return _mm_set1_ps(v); }

  static Singles LoadSamples(const int16_t* from) {
    const __m128i packed = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
    return _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(packed, packed), 16));
  }

  template <int kStep>
  static Doubles LoadDoubles(const double* from) {
    if constexpr (kStep == 0) return {_mm_set1_pd(*from), _mm_set1_pd(*from)};
    return {_mm_loadu_pd(from), _mm_loadu_pd(from + 2)};
  }

  static Doubles Widen(Singles v) { return {_mm_cvtps_pd(v), _mm_cvtps_pd(_mm_movehl_ps(v, v))}; }
  static Doubles LoadWide(const float* p) { return Widen(Load(p)); }
  static Singles Narrow(Doubles v) {
    return _mm_movelh_ps(_mm_cvtpd_ps(v.low), _mm_cvtpd_ps(v.high));
  }

  static Doubles ProductDifference(Doubles a, Doubles b, Doubles c, Doubles d) {
    return {_mm_sub_pd(_mm_mul_pd(a.low, b.low), _mm_mul_pd(c.low, d.low)),
            _mm_sub_pd(_mm_mul_pd(a.high, b.high), _mm_mul_pd(c.high, d.high))};
  }
  static Doubles ProductSum(Doubles a, Doubles b, Doubles c, Doubles d) {
    return {_mm_add_pd(_mm_mul_pd(a.low, b.low), _mm_mul_pd(c.low, d.low)),
            _mm_add_pd(_mm_mul_pd(a.high, b.high), _mm_mul_pd(c.high, d.high))};
  }

  // Of a double's 52 bits a single keeps 23; halfway means that the 29 others are 1000...
  static __m128i Halfway(Doubles v) {
    const __m128i lowWords = _mm_castps_si128(
        _mm_shuffle_ps(_mm_castpd_ps(v.low), _mm_castpd_ps(v.high), _MM_SHUFFLE(2, 0, 2, 0)));
    return _mm_cmpeq_epi32(_mm_slli_epi32(lowWords, 3), _mm_set1_epi32(INT32_MIN));
  }
  static bool AnyHalfway(Doubles a, Doubles b) {
    return _mm_movemask_epi8(_mm_or_si128(Halfway(a), Halfway(b))) != 0;
  }

  static void Transpose(Singles (&rows)[kLanes]) {
    _MM_TRANSPOSE4_PS(rows[0], rows[1], rows[2], rows[3]);
  }
};

}  // namespace

void TransformBaseline(const FftTables& tables, const int16_t* samples, float* real,
                       float* imaginary) {
  Transform<Sse2>(tables, samples, real, imaginary);
}

}  // namespace velt
