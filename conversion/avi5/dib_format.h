// Bottom-up device-independent bitmap frames as the AVI writer receives
// them: rows padded to 4 bytes, and for 8 bits the 1024-byte colour table
// (256 x blue, green, red, 0) after the pixels, the way movie frames carry it.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

namespace velmora::avi {

inline constexpr int32_t kColourTableBytes = 1024;
inline constexpr int32_t kBitmapInfoHeaderBytes = 40;

bool DibDepthSupported(int32_t bitCount);  // 8, 16, 24, 32

// Bytes of one row and of all pixels; -1 for impossible geometry.
int64_t DibStride(int32_t width, int32_t bitCount);
int64_t DibPixelBytes(int32_t width, int32_t height, int32_t bitCount);
// What one input frame holds: the pixels plus the colour table at 8 bits.
int64_t DibInputFrameBytes(int32_t width, int32_t height, int32_t bitCount);

// Copies a frame of unpadded rows (a movie frame: colour table after the
// pixels at 8 bits) into `out`, DibInputFrameBytes long, in the layout above.
// The padding bytes of `out` are left as they are. Supported depths only.
void PadRows(const uint8_t* packed, int32_t width, int32_t height, int32_t bitCount, uint8_t* out);

// BITMAPINFOHEADER followed by `colourTable` (empty above 8 bits).
std::vector<uint8_t> BitmapInfo(int32_t width, int32_t height, int32_t bitCount,
                                uint32_t compression, uint32_t sizeImage,
                                std::span<const uint8_t> colourTable);

}  // namespace velmora::avi
