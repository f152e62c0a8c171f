#include "conversion/avi5/dib_format.h"

#include <cstring>

#include "engine/byte_order.h"

namespace velmora::avi {

bool DibDepthSupported(int32_t bitCount) {
  return bitCount == 8 || bitCount == 16 || bitCount == 24 || bitCount == 32;
}

int64_t DibStride(int32_t width, int32_t bitCount) {
  if (width <= 0 || !DibDepthSupported(bitCount)) return -1;
  return (int64_t{width} * bitCount + 31) / 32 * 4;
}

int64_t DibPixelBytes(int32_t width, int32_t height, int32_t bitCount) {
  const int64_t stride = DibStride(width, bitCount);
  if (stride < 0 || height <= 0) return -1;
  return stride * height;
}

int64_t DibInputFrameBytes(int32_t width, int32_t height, int32_t bitCount) {
  const int64_t pixels = DibPixelBytes(width, height, bitCount);
  if (pixels < 0) return -1;
  return pixels + (bitCount == 8 ? kColourTableBytes : 0);
}

void PadRows(const uint8_t* packed, int32_t width, int32_t height, int32_t bitCount, uint8_t* out) {
  const size_t stride = size_t(DibStride(width, bitCount));
  const size_t rowBytes = size_t(width) * size_t(bitCount) / 8;
  for (size_t row = 0; row < size_t(height); ++row)
    std::memcpy(out + row * stride, packed + row * rowBytes, rowBytes);
  if (bitCount == 8)
    std::memcpy(out + stride * size_t(height), packed + rowBytes * size_t(height),
                kColourTableBytes);
}

std::vector<uint8_t> BitmapInfo(int32_t width, int32_t height, int32_t bitCount,
                                uint32_t compression, uint32_t sizeImage,
                                std::span<const uint8_t> colourTable) {
  std::vector<uint8_t> b(kBitmapInfoHeaderBytes + colourTable.size());
  uint8_t* p = b.data();
  StoreLE32(p + 0, kBitmapInfoHeaderBytes);            // biSize
  StoreLE32(p + 4, width);                             // biWidth
  StoreLE32(p + 8, height);                            // biHeight (positive: bottom-up)
  StoreLE16(p + 12, 1);                                // biPlanes
  StoreLE16(p + 14, int16_t(bitCount));                // biBitCount
  StoreLE32(p + 16, int32_t(compression));             // biCompression
  StoreLE32(p + 20, int32_t(sizeImage));               // biSizeImage
  StoreLE32(p + 24, 0);                                // biXPelsPerMeter
  StoreLE32(p + 28, 0);                                // biYPelsPerMeter
  StoreLE32(p + 32, int32_t(colourTable.size() / 4));  // biClrUsed
  StoreLE32(p + 36, 0);                                // biClrImportant
  for (size_t i = 0; i < colourTable.size(); ++i) p[kBitmapInfoHeaderBytes + i] = colourTable[i];
  return b;
}

}  // namespace velmora::avi
