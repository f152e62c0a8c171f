// Reads a .QRK movie frame by frame and decodes each frame into the current
// buffer (the previous buffer then holds a copy). Every read is checked:
// a damaged or truncated file ends with a result code, never a crash.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/byte_source.h"
#include "engine/movie_format.h"

namespace velmora {

class MovieReader {
 public:
  // Takes the source; reads and checks the header (magic, version -> -3;
  // 8-bit of a method other than Type1 -> -8; F not a whole number of 4-byte
  // units or an impossible geometry -> -3) and sizes the buffers.
  // Returns 0 or the error number (not packed).
  int32_t Open(std::unique_ptr<ByteSource> source);
  int32_t OpenFile(const std::string& utf8Path);  // -2 when it cannot be opened

  const MovieHeader& Header() const { return header_; }
  int64_t FrameSize() const { return frameBytes_; }
  int64_t FrameCount() const { return frameCount_; }
  int64_t FramesRead() const { return framesRead_; }

  // Reads and decodes the next frame record. Returns 0 with the frame in
  // Current(); 1 when all fps x sec frames have been read (trailing bytes
  // are ignored); -4 on a missing tag or a short read of tag, size or
  // payload; -5 on a payload larger than any the encoder can produce
  // (MaxPayloadBytes(F)) or a bad run.
  int32_t Next();

  const uint8_t* Current() const { return cur_.data(); }
  uint8_t* MutableCurrent() { return cur_.data(); }

 private:
  std::unique_ptr<ByteSource> src_;
  MovieHeader header_{};
  int64_t frameBytes_ = 0;
  int64_t frameCount_ = 0;
  int64_t framesRead_ = 0;
  std::vector<uint8_t> cur_, prev_, payload_;
};

}  // namespace velmora
