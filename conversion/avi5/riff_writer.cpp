#include "conversion/avi5/riff_writer.h"

#include <array>

#include "engine/byte_order.h"

namespace velmora::avi {

uint64_t RiffWriter::StartTag(uint32_t fourcc) {
  Put32(fourcc);
  Put32(0);  // size, patched by EndTag
  return Position();
}

uint64_t RiffWriter::StartList(uint32_t listTag, uint32_t formType) {
  const uint64_t start = StartTag(listTag);
  Put32(formType);
  return start;
}

void RiffWriter::EndTag(uint64_t start) {
  const uint64_t end = Position();
  const uint64_t size = end - start;
  if (size & 1) Put8(0);  // RIFF data is padded to an even length; the size excludes the pad
  // A chunk can never exceed 4 GiB; the AVI writer splits RIFF pieces long before.
  Patch32(start - 4, static_cast<uint32_t>(size));
}

void RiffWriter::Put8(uint8_t v) { PutBytes(&v, 1); }

void RiffWriter::Put16(uint16_t v) {
  uint8_t b[2];
  StoreLE16(b, static_cast<int16_t>(v));
  PutBytes(b, sizeof b);
}

void RiffWriter::Put32(uint32_t v) {
  uint8_t b[4];
  StoreLE32(b, static_cast<int32_t>(v));
  PutBytes(b, sizeof b);
}

void RiffWriter::Put64(uint64_t v) {
  Put32(static_cast<uint32_t>(v));
  Put32(static_cast<uint32_t>(v >> 32));
}

void RiffWriter::PutZeros(uint64_t n) {
  static const std::array<uint8_t, 4096> zeros{};
  while (n > 0) {
    const size_t take = n < zeros.size() ? size_t(n) : zeros.size();
    PutBytes(zeros.data(), take);
    n -= take;
  }
}

void RiffWriter::PutBytes(std::span<const uint8_t> bytes) { PutBytes(bytes.data(), bytes.size()); }

void RiffWriter::PutBytes(const void* p, size_t n) {
  if (ok_ && !sink_.Write(p, n)) ok_ = false;
}

void RiffWriter::Patch32(uint64_t position, uint32_t v) {
  if (!ok_) return;
  const uint64_t back = Position();
  if (!sink_.Seek(position)) {
    ok_ = false;
    return;
  }
  Put32(v);
  if (!sink_.Seek(back)) ok_ = false;
}

void RiffWriter::Patch64(uint64_t position, uint64_t v) {
  Patch32(position, static_cast<uint32_t>(v));
  Patch32(position + 4, static_cast<uint32_t>(v >> 32));
}

}  // namespace velmora::avi
