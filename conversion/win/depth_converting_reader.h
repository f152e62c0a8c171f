// DepthConvertingReader: reads a movie frame by frame and hands each frame out at another
// depth as bottom-up device-independent rows, ready to be fed to a recording
// session in user-capture mode. Type1/Type2 frames are drawn with their own
// header into a screen-compatible bitmap, Type0 frames set as its device
// bits; the bitmap is then read back at the destination depth.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "engine/movie_reader.h"
#include "engine/win/handles.h"

namespace velmora::win {

// True when frames of this size can be re-encoded at `targetBits`: a depth of
// 16, 24 or 32 and rows that are whole 4-byte units (movie frames carry no
// row padding, device-independent rows always do).
bool CanReencode(int32_t width, int32_t height, int32_t targetBits);

class DepthConvertingReader {
 public:
  // Opens the source and makes the drawing objects. Returns 0, -2 (cannot
  // open), -3 (bad header), -8 (8-bit movie not Type1), or -1 for a depth
  // other than 16, 24 or 32, or a width whose rows at that depth are not a
  // whole number of 4-byte units (such frames have no row layout that every
  // reader of movies agrees on).
  int32_t Init(const std::string& sourceFile, int32_t targetBits);
  // Writes the next frame, converted to the target depth, to `out`, which holds
  // `outBytes`. Returns 0, or -4 / -5 for a damaged record (kept for every
  // later call). `isLast` is true when this call delivered the last frame
  // or none was left (then `out` is untouched).
  int32_t ReadNextFrame(uint8_t* out, int64_t outBytes, bool& isLast);
  // Closes the source and frees the drawing objects.
  void Close();

  const MovieHeader& Header() const { return reader_.Header(); }
  int64_t FrameCount() const { return reader_.FrameCount(); }
  int32_t Status() const { return status_; }

 private:
  void Convert(const uint8_t* frame);

  struct PaletteInfo {
    BITMAPINFOHEADER header;
    RGBQUAD colours[256];
  };

  MovieReader reader_;
  int32_t status_ = 0;
  int64_t srcPixelBytes_ = 0;  // frame bytes without the colour table
  int64_t dstFrameBytes_ = 0;
  PaletteInfo srcInfo_{};
  BITMAPINFOHEADER dstHeader_{};
  std::vector<uint8_t> staging_;  // source rows padded as the drawing call reads them
  std::vector<uint8_t> readBack_;
  UniqueMemoryDc memory_;
  UniqueBitmap bitmap_;
};

}  // namespace velmora::win
