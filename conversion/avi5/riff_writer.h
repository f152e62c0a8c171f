// RIFF chunk writing over a ByteSink. StartTag writes the four-character code
// and a placeholder size and returns where the chunk's data begins; EndTag
// pads the data to an even length and patches the size. A failed write is
// remembered, so callers check Ok() once instead of after every field.
#pragma once
#include <cstdint>
#include <span>
#include <string_view>

#include "conversion/avi5/byte_sink.h"

namespace velmora::avi {

// 'a','b','c','d' -> the little-endian 32-bit code as it lies in the file.
constexpr uint32_t FourCc(std::string_view s) {
  return uint32_t(uint8_t(s[0])) | uint32_t(uint8_t(s[1])) << 8 | uint32_t(uint8_t(s[2])) << 16 |
         uint32_t(uint8_t(s[3])) << 24;
}

class RiffWriter {
 public:
  explicit RiffWriter(ByteSink& sink) : sink_(sink) {}

  // Chunk header with a zero size; returns the position of the chunk's data.
  uint64_t StartTag(uint32_t fourcc);
  // "RIFF"/"LIST" header plus the form type; returns the data position (the
  // form type's position), which is what list sizes count from.
  uint64_t StartList(uint32_t listTag, uint32_t formType);
  // Pads to even and writes the data size (end minus `start`) into the header.
  void EndTag(uint64_t start);

  void Put8(uint8_t v);
  void Put16(uint16_t v);
  void Put32(uint32_t v);
  void Put64(uint64_t v);
  void PutZeros(uint64_t n);
  void PutBytes(std::span<const uint8_t> bytes);
  void PutBytes(const void* p, size_t n);

  // Overwrites a 32-bit (or 64-bit) value at an absolute position and comes back.
  void Patch32(uint64_t position, uint32_t v);
  void Patch64(uint64_t position, uint64_t v);

  uint64_t Position() const { return sink_.Position(); }
  bool Ok() const { return ok_; }
  ByteSink& Sink() { return sink_; }

 private:
  ByteSink& sink_;
  bool ok_ = true;
};

}  // namespace velmora::avi
