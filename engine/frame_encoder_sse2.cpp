// The frame encoder for the x86-64 baseline (SSE2).
#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

#include "engine/frame_encoder_internal.h"

#define VELMORA_TARGET
#include "engine/frame_encoder_impl.h"

namespace velmora::codec_internal {
namespace {

inline __m128i EqualUnits(const uint8_t* cur, const uint8_t* prev) {
  return _mm_cmpeq_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(cur)),
                         _mm_loadu_si128(reinterpret_cast<const __m128i*>(prev)));
}

// Bit k set when unit k of 16 (64 bytes) is equal. Packing the all-ones or
// all-zeros lanes down to bytes keeps the unit order, so one movemask serves
// 16 units.
inline uint32_t EqualMask16(const uint8_t* cur, const uint8_t* prev) {
  const __m128i a = _mm_packs_epi32(EqualUnits(cur, prev), EqualUnits(cur + 16, prev + 16));
  const __m128i b =
      _mm_packs_epi32(EqualUnits(cur + 32, prev + 32), EqualUnits(cur + 48, prev + 48));
  return static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(a, b)));
}

struct Sse2Kernels {
  static uint64_t EqualMask64(const uint8_t* cur, const uint8_t* prev) {
    return uint64_t{EqualMask16(cur, prev)} | uint64_t{EqualMask16(cur + 64, prev + 64)} << 16 |
           uint64_t{EqualMask16(cur + 128, prev + 128)} << 32 |
           uint64_t{EqualMask16(cur + 192, prev + 192)} << 48;
  }

  static void CopyPiece(uint8_t* dst, const uint8_t* src) {
    for (int i = 0; i < 128; i += 16) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i),
                       _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i)));
    }
  }

  // Stores base + k for every set bit k of `bits`, in order, at `out`, and
  // returns how many; may store up to 8 values past those. The baseline has
  // no population count instruction, so the offsets come from the table too.
  static size_t ListBits(uint32_t* out, uint64_t bits, uint32_t base) {
    const __m128i zero = _mm_setzero_si128();
    __m128i at = _mm_set1_epi32(static_cast<int>(base));
    const __m128i eight = _mm_set1_epi32(8);
    size_t listed = 0;
    for (unsigned k = 0; k < 64; k += 8) {
      const auto byte = static_cast<unsigned>(bits >> k & 0xFF);
      const __m128i positions = _mm_unpacklo_epi8(
          _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kBitPositions.at[byte])), zero);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + listed),
                       _mm_add_epi32(_mm_unpacklo_epi16(positions, zero), at));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + listed + 4),
                       _mm_add_epi32(_mm_unpackhi_epi16(positions, zero), at));
      at = _mm_add_epi32(at, eight);
      listed += kBitPositions.count[byte];
    }
    return listed;
  }

  static size_t FirstDifference(const uint8_t* cur, const uint8_t* prev, size_t units) {
    const size_t bytes = 4 * units;  // a multiple of 32
    size_t i = 0;
    // 64 bytes a round, one branch: the common case is "all equal, go on".
    for (; i + 64 <= bytes; i += 64) {
      const __m128i a = EqualUnits(cur + i, prev + i);
      const __m128i b = EqualUnits(cur + i + 16, prev + i + 16);
      const __m128i c = EqualUnits(cur + i + 32, prev + i + 32);
      const __m128i d = EqualUnits(cur + i + 48, prev + i + 48);
      if (_mm_movemask_epi8(_mm_and_si128(_mm_and_si128(a, b), _mm_and_si128(c, d))) != 0xFFFF) {
        const uint64_t equalBytes = uint64_t(uint32_t(_mm_movemask_epi8(a))) |
                                    uint64_t(uint32_t(_mm_movemask_epi8(b))) << 16 |
                                    uint64_t(uint32_t(_mm_movemask_epi8(c))) << 32 |
                                    uint64_t(uint32_t(_mm_movemask_epi8(d))) << 48;
        return (i + std::countr_zero(~equalBytes)) / 4;
      }
    }
    for (; i < bytes; i += 16) {
      const uint32_t equalBytes = uint32_t(_mm_movemask_epi8(EqualUnits(cur + i, prev + i)));
      if (equalBytes != 0xFFFF) return (i + std::countr_zero(~equalBytes)) / 4;
    }
    return units;
  }
};

}  // namespace

int32_t CompressFrameSse2(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  return Encode<Sse2Kernels>(out, cur, prev, units);
}

}  // namespace velmora::codec_internal
