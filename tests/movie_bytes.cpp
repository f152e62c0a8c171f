#include "tests/movie_bytes.h"

#include <cstring>

#include "engine/byte_order.h"
#include "engine/frame_codec.h"

namespace velmora::test {

void MovieBytes::Header(const MovieHeader& h) {
  const auto b = EncodeMovieHeader(h);
  bytes.insert(bytes.end(), b.begin(), b.end());
}

void MovieBytes::RawRecord(const char tag[4], uint32_t size, const std::vector<uint8_t>& payload) {
  uint8_t head[8];
  std::memcpy(head, tag, 4);
  StoreLE32(head + 4, static_cast<int32_t>(size));
  bytes.insert(bytes.end(), head, head + 8);
  bytes.insert(bytes.end(), payload.begin(), payload.end());
}

void MovieBytes::Record(const std::vector<uint8_t>& payload) {
  RawRecord("FRAM", static_cast<uint32_t>(payload.size()), payload);
}

std::vector<uint8_t> EncodeMovie(const MovieHeader& h,
                                 const std::vector<std::vector<uint8_t>>& frames) {
  MovieBytes m;
  m.Header(h);
  const auto f = static_cast<size_t>(FrameBytes(h.width, h.height, h.bitCount));
  std::vector<uint8_t> prev(f, 0), out(MaxPayloadBytes(f));
  for (const auto& frame : frames) {
    const int32_t n =
        CompressFrame(out.data(), frame.data(), prev.data(), static_cast<int32_t>(f / 4));
    m.Record(std::vector<uint8_t>(out.begin(), out.begin() + 4 * n));
    prev = frame;
  }
  return m.bytes;
}

}  // namespace velmora::test
