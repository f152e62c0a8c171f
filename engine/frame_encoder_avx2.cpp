// The frame encoder for processors with AVX2. Only the functions of this file
// are compiled for AVX2 (target attribute), never the rest of the library:
// CompressFrame calls in here only after asking the processor.
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "engine/frame_encoder_internal.h"

#define VELMORA_TARGET __attribute__((target("avx2")))
#include "engine/frame_encoder_impl.h"

namespace velmora::codec_internal {
namespace {

VELMORA_TARGET inline __m256i EqualUnits(const uint8_t* cur, const uint8_t* prev) {
  return _mm256_cmpeq_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(cur)),
                            _mm256_loadu_si256(reinterpret_cast<const __m256i*>(prev)));
}

// Bit k set when unit k of 32 (128 bytes) is equal. The packs work inside
// each 128-bit lane, leaving groups of four units in the dword order
// 0,4 | 1,5 | 2,6 | 3,7 of the sources; one permute puts them back in order.
VELMORA_TARGET inline uint32_t EqualMask32(const uint8_t* cur, const uint8_t* prev) {
  const __m256i a = _mm256_packs_epi32(EqualUnits(cur, prev), EqualUnits(cur + 32, prev + 32));
  const __m256i b =
      _mm256_packs_epi32(EqualUnits(cur + 64, prev + 64), EqualUnits(cur + 96, prev + 96));
  const __m256i packed = _mm256_packs_epi16(a, b);
  const __m256i ordered =
      _mm256_permutevar8x32_epi32(packed, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
  return static_cast<uint32_t>(_mm256_movemask_epi8(ordered));
}

VELMORA_TARGET inline uint64_t EqualBytes(__m256i lo, __m256i hi) {
  return uint64_t(uint32_t(_mm256_movemask_epi8(lo))) | uint64_t(uint32_t(_mm256_movemask_epi8(hi)))
                                                            << 32;
}

struct Avx2Kernels {
  VELMORA_TARGET static uint64_t EqualMask64(const uint8_t* cur, const uint8_t* prev) {
    return uint64_t{EqualMask32(cur, prev)} | uint64_t{EqualMask32(cur + 128, prev + 128)} << 32;
  }

  VELMORA_TARGET static void CopyPiece(uint8_t* dst, const uint8_t* src) {
    for (int i = 0; i < 128; i += 32) {
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + i),
                          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i)));
    }
  }

  // Stores base + k for every set bit k of `bits`, in order, at `out`, and
  // returns how many; may store up to 8 values past those.
  VELMORA_TARGET static size_t ListBits(uint32_t* out, uint64_t bits, uint32_t base) {
    __m256i at = _mm256_set1_epi32(static_cast<int>(base));
    const __m256i eight = _mm256_set1_epi32(8);
    for (unsigned k = 0; k < 64; k += 8) {
      // Where this byte's positions go: after those of the bytes below it.
      const auto before = static_cast<size_t>(std::popcount(bits & ((uint64_t{1} << k) - 1)));
      const __m128i positions =
          _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kBitPositions.at[(bits >> k) & 0xFF]));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + before),
                          _mm256_add_epi32(_mm256_cvtepu8_epi32(positions), at));
      at = _mm256_add_epi32(at, eight);
    }
    return static_cast<size_t>(std::popcount(bits));
  }

  VELMORA_TARGET static size_t FirstDifference(const uint8_t* cur, const uint8_t* prev,
                                               size_t units) {
    const size_t bytes = 4 * units;  // a multiple of 32
    size_t i = 0;
    // 128 bytes a round, one branch: the common case is "all equal, go on".
    for (; i + 128 <= bytes; i += 128) {
      const __m256i a = EqualUnits(cur + i, prev + i);
      const __m256i b = EqualUnits(cur + i + 32, prev + i + 32);
      const __m256i c = EqualUnits(cur + i + 64, prev + i + 64);
      const __m256i d = EqualUnits(cur + i + 96, prev + i + 96);
      const __m256i all = _mm256_and_si256(_mm256_and_si256(a, b), _mm256_and_si256(c, d));
      if (_mm256_movemask_epi8(all) != -1) {
        const uint64_t low = EqualBytes(a, b);
        if (low != ~uint64_t{0}) return (i + std::countr_zero(~low)) / 4;
        return (i + 64 + std::countr_zero(~EqualBytes(c, d))) / 4;
      }
    }
    for (; i < bytes; i += 32) {
      const uint32_t equalBytes = uint32_t(_mm256_movemask_epi8(EqualUnits(cur + i, prev + i)));
      if (equalBytes != ~uint32_t{0}) return (i + std::countr_zero(~equalBytes)) / 4;
    }
    return units;
  }
};

}  // namespace

VELMORA_TARGET int32_t CompressFrameAvx2(uint8_t* out, const uint8_t* cur, const uint8_t* prev,
                                         int32_t units) {
  return Encode<Avx2Kernels>(out, cur, prev, units);
}

}  // namespace velmora::codec_internal
