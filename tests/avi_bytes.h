// Frames, waves and sinks shared by the AVI core tests.
#pragma once
#include <cstdint>
#include <map>
#include <vector>

#include "conversion/avi5/avi_writer.h"
#include "conversion/avi5/byte_sink.h"
#include "engine/byte_source.h"

namespace velmora::avi::test {

// A frame whose every byte depends on (frame, offset), so swapped or lost
// frames show.
std::vector<uint8_t> PatternFrame(size_t bytes, int frame);

// An uncompressed 24-bit video stream named "AVIFile".
VideoStreamFormat Video24(int w, int h, int fps);

// A PCM wave file image: `samples` frames of `channels` x `bits`, sample
// value a function of its index; `tag` other than 1 makes a non-PCM wave.
std::vector<uint8_t> WaveImage(uint32_t rate, uint16_t channels, uint16_t bits, uint32_t samples,
                               uint16_t tag = 1);

// Keeps the bytes of small writes (headers, indexes) and only the positions
// of large ones, so multi-gigabyte structures can be written and walked in
// memory. Reads of discarded ranges give zeros.
class SparseSink final : public ByteSink, public ByteSource {
 public:
  explicit SparseSink(size_t keepBelow) : keepBelow_(keepBelow) {}
  bool Write(const void* src, size_t n) override;
  uint64_t Position() const override { return pos_; }
  bool Seek(uint64_t position) override;
  uint64_t End() const override { return end_; }
  size_t Read(void* dst, size_t n) override;

 private:
  size_t keepBelow_;
  std::map<uint64_t, uint8_t> kept_;  // byte by position
  uint64_t pos_ = 0, end_ = 0;
};

}  // namespace velmora::avi::test
