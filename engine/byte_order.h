// Little-endian loads and stores for file and shared-memory layouts; byte
// by byte so alignment and host order never matter.
#pragma once
#include <cstdint>

namespace velmora {

inline void StoreLE32(uint8_t* p, int32_t v) {
  const auto u = static_cast<uint32_t>(v);
  p[0] = static_cast<uint8_t>(u);
  p[1] = static_cast<uint8_t>(u >> 8);
  p[2] = static_cast<uint8_t>(u >> 16);
  p[3] = static_cast<uint8_t>(u >> 24);
}

inline void StoreLE16(uint8_t* p, int16_t v) {
  const auto u = static_cast<uint16_t>(v);
  p[0] = static_cast<uint8_t>(u);
  p[1] = static_cast<uint8_t>(u >> 8);
}

inline int32_t LoadLE32(const uint8_t* p) {
  return static_cast<int32_t>(uint32_t{p[0]} | uint32_t{p[1]} << 8 | uint32_t{p[2]} << 16 |
                              uint32_t{p[3]} << 24);
}

inline uint32_t LoadLE32U(const uint8_t* p) { return static_cast<uint32_t>(LoadLE32(p)); }

inline int16_t LoadLE16(const uint8_t* p) {
  return static_cast<int16_t>(uint16_t{p[0]} | uint16_t{p[1]} << 8);
}

}  // namespace velmora
