// Any bytes as a pair of frames: every encoder path must produce the same
// payload, stay inside MaxPayloadBytes and decode back to the frame exactly.
//
// Input: F bytes of the previous frame, then F bytes that pick the current
// frame unit by unit: a unit whose first byte is even stays as it was, any
// other unit is taken from the input, so that runs of both kinds appear.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "engine/frame_codec.h"
#include "engine/frame_encoder_internal.h"

namespace {

using velmora::MaxPayloadBytes;

std::vector<uint8_t> Compress(int32_t (*compress)(uint8_t*, const uint8_t*, const uint8_t*,
                                                  int32_t),
                              const std::vector<uint8_t>& cur, const std::vector<uint8_t>& prev) {
  const size_t bound = MaxPayloadBytes(cur.size());
  std::vector<uint8_t> out(bound);  // exactly the bound: ASan sees any write past it
  const int32_t units =
      compress(out.data(), cur.data(), prev.data(), static_cast<int32_t>(cur.size() / 4));
  if (units < 0 || size_t(units) * 4 > bound) abort();
  out.resize(size_t(units) * 4);
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const size_t f = size / 2 / 4 * 4;
  std::vector<uint8_t> prev(data, data + f), cur(prev);
  for (size_t u = 0; u < f; u += 4) {
    if (data[f + u] & 1) std::memcpy(&cur[u], data + f + u, 4);
  }
  const auto payload = Compress(velmora::codec_internal::CompressFrameSse2, cur, prev);
  if (velmora::codec_internal::CpuHasAvx2() &&
      Compress(velmora::codec_internal::CompressFrameAvx2, cur, prev) != payload) {
    abort();
  }
  std::vector<uint8_t> decoded(f);
  if (velmora::DecodeFrame(payload.data(), payload.size(), prev.data(), decoded.data(), f) != 0)
    abort();
  if (decoded != cur) abort();
  return 0;
}
