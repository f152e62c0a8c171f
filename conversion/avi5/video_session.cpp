#include "conversion/avi5/video_session.h"

#include <algorithm>
#include <cstring>

#include "conversion/avi5/dib_format.h"

namespace velmora::avi {

namespace {
// Grey ramp for an 8-bit file that ends before its first frame.
std::vector<uint8_t> GreyTable() {
  std::vector<uint8_t> t(kColourTableBytes);
  for (int i = 0; i < 256; ++i) t[i * 4] = t[i * 4 + 1] = t[i * 4 + 2] = uint8_t(i);
  return t;
}
}  // namespace

AviStatus VideoSession::Check(const VideoSessionParams& p) {
  if (p.width <= 0 || p.height <= 0 || p.width > 0xFFFF || p.height > 0xFFFF || p.fps <= 0 ||
      !DibDepthSupported(p.bitCount))
    return kAviBadParameter;
  // One frame must fit a chunk, whose size field is 31 bits in the indexes.
  if (DibInputFrameBytes(p.width, p.height, p.bitCount) >= (int64_t{1} << 31))
    return kAviBadParameter;
  return kAviOk;
}

VideoSession::VideoSession(std::unique_ptr<ByteSink> sink, const VideoSessionParams& p,
                           std::unique_ptr<FrameCompressor> compressor, AviWriterOptions options)
    : sink_(std::move(sink)),
      p_(p),
      compressor_(std::move(compressor)),
      writer_(*sink_, options),
      pixelBytes_(DibPixelBytes(p.width, p.height, p.bitCount)) {}

VideoSession::~VideoSession() {
  if (compressorRunning_) compressor_->End();
}

AviStatus VideoSession::BeginWith(const uint8_t* colourTable) {
  begun_ = true;
  std::span<const uint8_t> table;
  if (p_.bitCount == 8) {
    colourTable_.assign(colourTable, colourTable + kColourTableBytes);
    table = colourTable_;
  }
  VideoStreamFormat v;
  v.width = p_.width;
  v.height = p_.height;
  v.fps = p_.fps;
  v.name = p_.streamName;
  const auto input = BitmapInfo(p_.width, p_.height, p_.bitCount, 0, uint32_t(pixelBytes_), table);
  if (compressor_) {
    const AviStatus st = compressor_->Start(input, p_.fps, v.strf, v.handler);
    if (st != kAviOk) return st;
    compressorRunning_ = true;
    v.compressed = true;
    v.quality = compressor_->Quality();
  } else {
    v.strf = input;
  }
  return writer_.Begin(v, nullptr);
}

AviStatus VideoSession::AddFrame(const uint8_t* frame) {
  if (!frame) return kAviBadParameter;
  const uint8_t* table = frame + pixelBytes_;
  if (!begun_) {
    const AviStatus st = BeginWith(table);
    if (st != kAviOk) return st;
  } else if (p_.bitCount == 8 && std::memcmp(table, colourTable_.data(), kColourTableBytes) != 0) {
    std::memcpy(colourTable_.data(), table, kColourTableBytes);
    const AviStatus st = writer_.WritePaletteChange(
        std::span<const uint8_t, kColourTableBytes>(colourTable_.data(), kColourTableBytes));
    if (st != kAviOk) return st;
  }
  if (!compressor_) return writer_.WriteVideo({frame, size_t(pixelBytes_)}, true);

  std::span<const uint8_t> out;
  bool key = false;
  const AviStatus st = compressor_->Compress(frame, out, key);
  if (st != kAviOk) return st;
  // Readers start decoding at a key frame, and some compressors never say
  // that the first frame is one although it always is.
  return writer_.WriteVideo(out, key || writer_.VideoFrames() == 0);
}

AviStatus VideoSession::Close() {
  AviStatus st = kAviOk;
  if (!begun_) st = BeginWith(GreyTable().data());
  if (compressorRunning_) {
    compressor_->End();
    compressorRunning_ = false;
  }
  const AviStatus closed = writer_.Close();
  if (st == kAviOk) st = closed;
  if (!sink_->Finish() && st == kAviOk) st = kAviWriteFailed;
  return st;
}

}  // namespace velmora::avi
