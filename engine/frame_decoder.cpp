// Frame decoder: one block copy per run, every bound checked before the copy.
#include <algorithm>
#include <cstring>

#include "engine/byte_order.h"
#include "engine/frame_codec.h"

namespace velmora {
namespace {

// Frames with many changes decode into many short runs, where a call to
// memcpy costs more than the copy (the runtime's memcpy under Wine most of
// all): those go in fixed 64-byte pieces, which may read and write up to a
// piece past the run. Long runs are worth the call.
constexpr size_t kPieceBytes = 64;
constexpr size_t kShortRunBytes = 1024;

// Copies n bytes from src to dst; `room` is how many bytes past n both may
// be read and written (the bytes written there are overwritten by later runs).
inline void CopyRun(uint8_t* dst, const uint8_t* src, size_t n, size_t room) {
  if (n <= kShortRunBytes && room >= kPieceBytes) {
    size_t i = 0;
    do {
      std::memcpy(dst + i, src + i, kPieceBytes);
      i += kPieceBytes;
    } while (i < n);
  } else {
    std::memcpy(dst, src, n);
  }
}

}  // namespace

int32_t DecodeFrame(const uint8_t* payload, size_t payloadBytes, const uint8_t* prev, uint8_t* cur,
                    size_t frameBytes) {
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
    const size_t frameRoom = frameBytes - out - n;
    if (literal) {
      // Literal data that the payload does not hold.
      if (n > payloadBytes - in) return kBadFrameSize;
      CopyRun(cur + out, payload + in, n, std::min(frameRoom, payloadBytes - in - n));
      in += n;
    } else {
      CopyRun(cur + out, prev + out, n, frameRoom);
    }
    out += n;
    literal = !literal;
  }
  // Whatever follows the run that completed the frame is not ours to read.
  return 0;
}

}  // namespace velmora
