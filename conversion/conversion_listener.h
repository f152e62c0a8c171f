// What a conversion tells its window: one call per frame handed on, for the
// movie-to-AVI writer and the re-encoder alike.
#pragma once
#include <cstdint>

namespace velmora {

class ConversionListener {
 public:
  virtual ~ConversionListener() = default;
  // After each frame has been added: its index, the movie's frame count, and
  // whole milliseconds since the conversion started.
  virtual void Decoding(int64_t frameIndex, int64_t frameCount, int32_t ms) = 0;
};

}  // namespace velmora
