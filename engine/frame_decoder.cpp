// Frame decoder: one block copy per run, every bound checked before the copy.
#include <cstring>

#include "engine/byte_order.h"
#include "engine/frame_codec.h"

namespace velmora {

int32_t DecodeFrame(const uint8_t* payload, size_t payloadBytes, const uint8_t* prev,
                    uint8_t* cur, size_t frameBytes) {
  constexpr int32_t kBadFrameSize = -5;
  size_t in = 0, out = 0;  // in <= payloadBytes and out <= frameBytes throughout
  bool literal = false;    // runs alternate, starting with an unchanged run
  while (out < frameBytes) {
    // The payload ended before its runs covered the frame.
    if (payloadBytes - in < 4) return kBadFrameSize;
    // 64-bit, so that a hostile count of 2^30 or more cannot wrap to a small n.
    const uint64_t n = uint64_t{LoadLE32U(payload + in)} * 4;
    in += 4;
    // A run longer than the frame, or one that would carry the write past it.
    if (n > frameBytes || n > frameBytes - out) return kBadFrameSize;
    if (literal) {
      // Literal data that the payload does not hold.
      if (n > payloadBytes - in) return kBadFrameSize;
      std::memcpy(cur + out, payload + in, n);
      in += n;
    } else if (n) {
      std::memcpy(cur + out, prev + out, n);
    }
    out += n;
    literal = !literal;
  }
  // Whatever follows the run that completed the frame is not ours to read.
  return 0;
}

}  // namespace velmora
