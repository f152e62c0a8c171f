// Times of the high-resolution clock in 32-bit fields. Where an interface
// fixes a 32-bit millisecond field (Rec's start-time arguments, the recorder
// block), it holds the low 32 bits of the clock's whole milliseconds: the
// clock is the machine's uptime, which passes 2^31 ms after 24.8 days and
// 2^32 ms after 49.7. Such a field is only ever compared modulo 2^32, against
// a full reading taken at the time.
#pragma once
#include <cmath>
#include <cstdint>

namespace velmora {

// The low 32 bits of a whole-millisecond time (modulo 2^32, never out of range).
constexpr int32_t Low32Ms(int64_t wholeMs) {
  return static_cast<int32_t>(static_cast<uint32_t>(wholeMs));
}

// How far `a` lies after `b`, both low 32 bits: exact while the true times
// are less than 2^31 ms apart.
constexpr int32_t Low32Ahead(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// The full clock time with low 32 bits `low32` that lies nearest to the
// reading `nearMs`.
inline double FullMsNear(int32_t low32, double nearMs) {
  const auto whole = static_cast<int64_t>(std::floor(nearMs));
  return static_cast<double>(whole + Low32Ahead(low32, Low32Ms(whole)));
}

}  // namespace velmora
