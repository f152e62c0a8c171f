#include "engine/tests/recording_rig.h"

#include <cstring>
#include <memory>

#include "engine/byte_order.h"
#include "engine/frame_codec.h"
#include "engine/movie_reader.h"

namespace velmora::test {

int32_t Rig::Run(MovieSink* other) {
  RecordingPorts ports{clock, &source, other ? *other : sink, listener,
                       compress ? compress : &CompressFrame};
  return RunRecordingLoop(session, request, ports);
}

int32_t SplitEveryChange(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  auto same = [&](int32_t u) {
    return std::memcmp(cur + 4 * size_t(u), prev + 4 * size_t(u), 4) == 0;
  };
  int32_t written = 0;
  for (int32_t i = 0; i < units;) {
    int32_t start = i;
    while (i < units && same(i)) ++i;
    StoreLE32(out + 4 * size_t(written++), i - start);
    if (i >= units) break;
    start = i;
    while (i < units && !same(i)) ++i;
    StoreLE32(out + 4 * size_t(written++), i - start);
    std::memcpy(out + 4 * size_t(written), cur + 4 * size_t(start), 4 * size_t(i - start));
    written += i - start;
  }
  return written;
}

std::vector<uint32_t> RecordSizes(const std::vector<uint8_t>& movie) {
  std::vector<uint32_t> sizes;
  for (size_t pos = 32;
       pos + 8 <= movie.size() && std::memcmp(movie.data() + pos, "FRAM", 4) == 0;) {
    sizes.push_back(LoadLE32U(movie.data() + pos + 4));
    pos += 8 + sizes.back();
  }
  return sizes;
}

uint64_t HeaderAndRecordBytes(const std::vector<uint8_t>& movie) {
  uint64_t n = 32;
  for (uint32_t s : RecordSizes(movie)) n += 8 + s;
  return n;
}

ReadResult ReadBack(const std::vector<uint8_t>& movie) {
  MovieReader reader;
  ReadResult r;
  r.open = reader.Open(std::make_unique<MemoryByteSource>(movie));
  if (r.open != 0) return r;
  while ((r.last = reader.Next()) == 0)
    r.frames.emplace_back(reader.Current(), reader.Current() + reader.FrameSize());
  return r;
}

}  // namespace velmora::test
