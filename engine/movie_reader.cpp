#include "engine/movie_reader.h"

#include <cstring>

#include "engine/byte_order.h"
#include "engine/frame_codec.h"
#include "engine/result_codes.h"

namespace velmora {

int32_t MovieReader::OpenFile(const std::string& utf8Path) {
  auto f = FileByteSource::Open(utf8Path);
  if (!f) return kErrCannotOpen;
  return Open(std::move(f));
}

int32_t MovieReader::Open(std::unique_ptr<ByteSource> source) {
  src_ = std::move(source);
  framesRead_ = 0;
  uint8_t raw[kMovieHeaderBytes];
  if (src_->Read(raw, sizeof raw) != sizeof raw) return kErrBrokenFile;
  const auto h = DecodeMovieHeader(std::span<const uint8_t, kMovieHeaderBytes>(raw));
  if (!h) return kErrBrokenFile;
  if (h->bitCount == 8 && h->method != 1) return kErrEightBitType1Only;
  // Playback itself checks no ranges, but a reader that sizes buffers from
  // the header must: an empty or impossible geometry is a broken file.
  const int64_t f = FrameBytes(h->width, h->height, h->bitCount);
  if (h->width < 1 || h->height < 1 || h->bitCount < 1 || f <= 0 || f % 4 != 0)
    return kErrBrokenFile;
  header_ = *h;
  frameBytes_ = f;
  frameCount_ = FrameSlots(*h);
  cur_.assign(static_cast<size_t>(f), 0);
  prev_.assign(static_cast<size_t>(f), 0);
  // The payload buffer holds the largest payload the encoder can produce
  // (every other unit changed: 1.5 x F plus two counts); a record claiming
  // more than that cannot come from a recording and is refused unread.
  // A smaller buffer would refuse real movies: a frame whose every unit
  // changed, such as the first frame of most recordings, codes to F + 8.
  payload_.assign(MaxPayloadBytes(static_cast<size_t>(f)), 0);
  return 0;
}

int32_t MovieReader::Next() {
  if (!src_) return kErrBrokenFile;
  if (framesRead_ >= frameCount_) return 1;
  uint8_t head[kFrameRecordHeadBytes];
  if (src_->Read(head, sizeof head) != sizeof head) return kErrNoFrameHeader;
  if (std::memcmp(head, kFrameTag.data(), kFrameTag.size()) != 0) return kErrNoFrameHeader;
  const uint32_t size = LoadLE32U(head + 4);
  if (size > payload_.size()) return kErrBadFrameSize;
  if (src_->Read(payload_.data(), size) != size) return kErrNoFrameHeader;
  const int32_t r = DecodeFrame(payload_.data(), size, prev_.data(), cur_.data(), cur_.size());
  if (r != 0) return r;
  std::memcpy(prev_.data(), cur_.data(), cur_.size());
  ++framesRead_;
  return 0;
}

}  // namespace velmora
