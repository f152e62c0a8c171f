#include "tests/avi_bytes.h"

#include <algorithm>
#include <cstring>

#include "conversion/avi5/dib_format.h"
#include "engine/byte_order.h"
#include "sound/wav_header.h"

namespace velmora::avi::test {

std::vector<uint8_t> PatternFrame(size_t bytes, int frame) {
  std::vector<uint8_t> f(bytes);
  for (size_t i = 0; i < bytes; ++i) f[i] = uint8_t(i * 7 + size_t(frame) * 31 + (i >> 8));
  return f;
}

VideoStreamFormat Video24(int w, int h, int fps) {
  VideoStreamFormat v;
  v.width = w;
  v.height = h;
  v.fps = fps;
  v.strf = BitmapInfo(w, h, 24, 0, uint32_t(DibPixelBytes(w, h, 24)), {});
  v.name = "AVIFile";
  return v;
}

std::vector<uint8_t> WaveImage(uint32_t rate, uint16_t channels, uint16_t bits, uint32_t samples,
                               uint16_t tag) {
  const uint32_t data = samples * uint32_t(channels * bits / 8);
  const auto header = sound::EncodeWavHeader({int32_t(rate), channels, bits}, data);
  std::vector<uint8_t> w(header.begin(), header.end());
  StoreLE16(&w[20], int16_t(tag));
  for (uint32_t i = 0; i < data; ++i) w.push_back(uint8_t(i * 13 + (i >> 9)));
  if (data & 1) w.push_back(0);
  return w;
}

bool SparseSink::Write(const void* src, size_t n) {
  const auto* p = static_cast<const uint8_t*>(src);
  for (size_t i = 0; n < keepBelow_ && i < n; ++i) kept_[pos_ + i] = p[i];
  pos_ += n;
  end_ = std::max(end_, pos_);
  return true;
}

bool SparseSink::Seek(uint64_t position) {
  if (position > end_) return false;
  pos_ = position;
  return true;
}

size_t SparseSink::Read(void* dst, size_t n) {
  if (pos_ >= end_) return 0;
  n = size_t(std::min<uint64_t>(n, end_ - pos_));
  auto* d = static_cast<uint8_t*>(dst);
  std::memset(d, 0, n);
  for (auto it = kept_.lower_bound(pos_); it != kept_.end() && it->first < pos_ + n; ++it)
    d[it->first - pos_] = it->second;
  pos_ += n;
  return n;
}

}  // namespace velmora::avi::test
