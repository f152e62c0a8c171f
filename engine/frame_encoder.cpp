// Frame encoder entry: picks the AVX2 compilation of the encoder where the
// processor has it, the SSE2 baseline elsewhere.
#include "engine/frame_codec.h"
#include "engine/frame_encoder_internal.h"

namespace velmora {
namespace codec_internal {

bool CpuHasAvx2() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2");
}

}  // namespace codec_internal

int32_t CompressFrame(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  static const bool avx2 = codec_internal::CpuHasAvx2();
  return avx2 ? codec_internal::CompressFrameAvx2(out, cur, prev, units)
              : codec_internal::CompressFrameSse2(out, cur, prev, units);
}

}  // namespace velmora
