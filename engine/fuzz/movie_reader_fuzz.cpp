// Any bytes as a movie file: the reader and decoder must return a code, never
// read or write outside their buffers. Geometry is capped so that one input
// cannot ask for gigabytes of frame buffers.
#include <cstddef>
#include <cstdint>
#include <span>

#include "engine/movie_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size >= velmora::kMovieHeaderBytes) {
    const auto h = velmora::DecodeMovieHeader(
        std::span<const uint8_t, velmora::kMovieHeaderBytes>(data, velmora::kMovieHeaderBytes));
    if (h && velmora::FrameBytes(h->width, h->height, h->bitCount) > (1 << 20)) return 0;
  }
  velmora::MovieReader reader;
  if (reader.Open(std::make_unique<velmora::MemoryByteSource>(std::span(data, size))) != 0)
    return 0;
  for (int i = 0; i < 4096 && reader.Next() == 0; ++i) {
  }
  return 0;
}
