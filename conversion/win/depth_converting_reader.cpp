#include "conversion/win/depth_converting_reader.h"

#include <algorithm>
#include <cstring>

#include "conversion/avi5/dib_format.h"
#include "engine/movie_format.h"
#include "engine/result_codes.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {

bool CanReencode(int32_t width, int32_t height, int32_t targetBits) {
  return (targetBits == 16 || targetBits == 24 || targetBits == 32) && width > 0 && height > 0 &&
         avi::DibStride(width, targetBits) * height == FrameBytes(width, height, targetBits);
}

int32_t DepthConvertingReader::Init(const std::string& sourceFile, int32_t targetBits) {
  Close();
  status_ = reader_.OpenFile(sourceFile);
  if (status_ != 0) return status_;
  const MovieHeader& h = reader_.Header();
  dstFrameBytes_ = FrameBytes(h.width, h.height, targetBits);
  if (!CanReencode(h.width, h.height, targetBits)) {
    Close();
    return status_ = kErrNotInitialised;
  }
  srcPixelBytes_ = reader_.FrameSize() - (h.bitCount == 8 ? kPaletteBytes : 0);
  srcInfo_ = {};
  srcInfo_.header = DibHeader(h.width, h.height, h.bitCount);
  dstHeader_ = DibHeader(h.width, h.height, targetBits);
  staging_.assign(
      static_cast<size_t>(std::max(avi::DibStride(h.width, h.bitCount) * h.height, srcPixelBytes_)),
      0);
  readBack_.assign(static_cast<size_t>(dstFrameBytes_), 0);

  WindowDc screen = WindowDc::Get(nullptr);
  memory_.reset(CreateCompatibleDC(screen.get()));
  bitmap_.reset(CreateCompatibleBitmap(screen.get(), h.width, h.height));
  return 0;
}

int32_t DepthConvertingReader::ReadNextFrame(uint8_t* out, int64_t outBytes, bool& isLast) {
  isLast = true;
  if (status_ != 0) return status_;
  const int32_t next = reader_.Next();
  if (next == 1) return 0;  // every frame has been read
  if (next != 0) return status_ = next;
  Convert(reader_.Current());
  std::memcpy(out, readBack_.data(), static_cast<size_t>(std::min(outBytes, dstFrameBytes_)));
  isLast = reader_.FramesRead() >= reader_.FrameCount();
  return 0;
}

void DepthConvertingReader::Convert(const uint8_t* frame) {
  const MovieHeader& h = reader_.Header();
  if (h.method == 0) {
    SetBitmapBits(bitmap_.get(), static_cast<DWORD>(reader_.FrameSize()), frame);
  } else {
    // The drawing call reads whole padded rows: it gets a buffer that has them.
    std::memcpy(staging_.data(), frame, static_cast<size_t>(srcPixelBytes_));
    if (h.bitCount == 8) std::memcpy(srcInfo_.colours, frame + srcPixelBytes_, kPaletteBytes);
    SelectGuard drawing(memory_.get(), bitmap_.get());
    SetDIBitsToDevice(memory_.get(), 0, 0, static_cast<DWORD>(h.width),
                      static_cast<DWORD>(h.height), 0, 0, 0, static_cast<UINT>(h.height),
                      staging_.data(), reinterpret_cast<const BITMAPINFO*>(&srcInfo_),
                      DIB_RGB_COLORS);
  }
  // Read back with the bitmap out of the context, as GetDIBits wants it.
  GetDIBits(memory_.get(), bitmap_.get(), 0, static_cast<UINT>(h.height), readBack_.data(),
            reinterpret_cast<BITMAPINFO*>(&dstHeader_), DIB_RGB_COLORS);
}

void DepthConvertingReader::Close() {
  reader_ = MovieReader();
  bitmap_.reset();
  memory_.reset();
  staging_.clear();
  readBack_.clear();
}

}  // namespace velmora::win
