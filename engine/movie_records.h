// The bytes of the two record kinds every movie writer produces, built in
// one place so the file writers and the in-memory sink cannot drift apart.
#pragma once
#include <array>
#include <cstdint>

#include "engine/byte_order.h"
#include "engine/movie_format.h"

namespace velmora {

// "FRAM" and the payload size in bytes; the payload follows.
inline std::array<uint8_t, kFrameRecordHeadBytes> FrameRecordHead(uint32_t payloadBytes) {
  std::array<uint8_t, kFrameRecordHeadBytes> b{};
  for (int k = 0; k < 4; ++k) b[k] = kFrameTag[k];
  StoreLE32(b.data() + 4, static_cast<int32_t>(payloadBytes));
  return b;
}

// A dropped frame: a 4-byte payload holding one unchanged run over the
// whole frame, so a reader repeats the previous picture.
inline std::array<uint8_t, kDroppedRecordBytes> DroppedRecord(uint32_t unitsInFrame) {
  std::array<uint8_t, kDroppedRecordBytes> b{};
  for (int k = 0; k < 4; ++k) b[k] = kFrameTag[k];
  StoreLE32(b.data() + 4, 4);
  StoreLE32(b.data() + 8, static_cast<int32_t>(unitsInFrame));
  return b;
}

}  // namespace velmora
