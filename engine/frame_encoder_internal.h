// Inside of the frame encoder: the run builder is written once, generic over
// a small set of vector kernels; one kernel set per instruction set. Tests
// and benchmarks use this header to drive each path directly.
#pragma once
#include <cstddef>
#include <cstdint>

namespace velmora::codec_internal {

// Equality is decided for 64 units (256 bytes) at a time: one bit per unit.
constexpr size_t kBlockUnits = 64;
// Both kernels scan whole groups of this many units; the caller does the rest.
constexpr size_t kGroupUnits = 8;

// Each kernel reads only cur[0, 4 * units) and prev[0, 4 * units).
struct Sse2Kernels {
  // For each of `blocks` consecutive blocks of 64 units, a mask whose bit k
  // is set when unit k of the block is equal in cur and prev.
  static void EqualMasks(const uint8_t* cur, const uint8_t* prev, size_t blocks, uint64_t* masks);
  // First unit in [0, units) that differs, or `units`; units % kGroupUnits == 0.
  static size_t FirstDifference(const uint8_t* cur, const uint8_t* prev, size_t units);
};

// Same contract; callable only when the processor has AVX2.
struct Avx2Kernels {
  static void EqualMasks(const uint8_t* cur, const uint8_t* prev, size_t blocks, uint64_t* masks);
  static size_t FirstDifference(const uint8_t* cur, const uint8_t* prev, size_t units);
};

bool CpuHasAvx2();

// CompressFrame with a fixed kernel set; the Avx2 one only where CpuHasAvx2().
int32_t CompressFrameSse2(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units);
int32_t CompressFrameAvx2(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units);

}  // namespace velmora::codec_internal
