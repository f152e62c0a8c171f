// The platform's compressor-variables record (COMPVARS) as raw bytes: its
// size and the offsets of the fields read outside the Windows shell. The
// shell checks these against the real structure at compile time.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace velmora::avi {

inline constexpr bool kPointers64 = sizeof(void*) == 8;
inline constexpr size_t kCompVarsBytes = kPointers64 ? 96 : 64;
inline constexpr size_t kCompVarsHandlerOffset = kPointers64 ? 20 : 16;  // fccHandler
inline constexpr size_t kCompVarsKeyOffset = kPointers64 ? 60 : 40;      // lKey
inline constexpr size_t kCompVarsQualityOffset = kPointers64 ? 68 : 48;  // lQ

inline int32_t CompVarsField(const uint8_t* cv, size_t offset) {
  int32_t v;
  std::memcpy(&v, cv + offset, sizeof v);
  return v;
}

}  // namespace velmora::avi
