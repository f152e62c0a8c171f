// Inside of the frame encoder, for tests and benchmarks: each instruction set
// path on its own, and the processor check that chooses between them.
#pragma once
#include <cstdint>

namespace velmora::codec_internal {

bool CpuHasAvx2();

// CompressFrame with a fixed instruction set; the AVX2 one only where CpuHasAvx2().
int32_t CompressFrameSse2(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units);
int32_t CompressFrameAvx2(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units);

}  // namespace velmora::codec_internal
