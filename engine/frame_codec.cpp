#include "engine/frame_codec.h"

#include <cstring>

#include "engine/byte_order.h"

namespace velmora {

int32_t DecodeFrame(const uint8_t* payload, size_t payloadBytes, const uint8_t* prev,
                    uint8_t* cur, size_t frameBytes) {
  size_t in = 0, out = 0;
  bool literal = false;
  while (out < frameBytes) {
    if (payloadBytes - in < 4) return -5;
    const uint64_t n = uint64_t{LoadLE32U(payload + in)} * 4;
    in += 4;
    if (n > frameBytes - out) return -5;
    if (literal) {
      if (n > payloadBytes - in) return -5;
      std::memcpy(cur + out, payload + in, n);
      in += n;
    } else if (n) {
      std::memcpy(cur + out, prev + out, n);
    }
    out += n;
    literal = !literal;
  }
  return 0;
}

int32_t CompressFrame(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  if (units <= 0) return 0;
  int32_t w = 0, i = 0;
  while (i < units) {
    int32_t s = i;
    while (i < units && std::memcmp(cur + 4 * size_t(i), prev + 4 * size_t(i), 4) == 0) ++i;
    StoreLE32(out + 4 * size_t(w++), i - s);
    if (i >= units) break;
    s = i;
    while (i < units && std::memcmp(cur + 4 * size_t(i), prev + 4 * size_t(i), 4) != 0) ++i;
    StoreLE32(out + 4 * size_t(w++), i - s);
    std::memcpy(out + 4 * size_t(w), cur + 4 * size_t(s), 4 * size_t(i - s));
    w += i - s;
  }
  return w;
}

}  // namespace velmora
