#include "engine/movie_format.h"

#include <algorithm>
#include <cstring>

#include "engine/byte_order.h"

namespace velmora {

int64_t FrameBytes(int32_t width, int32_t height, int32_t bitCount) {
  if (width < 0 || height < 0 || bitCount < 0) return -1;
  // The product is taken in 32-bit signed arithmetic by the format; a region
  // whose product overflows that cannot be a movie.
  const int64_t bits = int64_t{width} * height * bitCount;
  if (bits > INT32_MAX) return -1;
  int64_t f = bits / 8;
  if (bitCount == 8) f += kPaletteBytes;
  return f;
}

int64_t FrameSlots(const MovieHeader& h) {
  if (h.fps <= 0 || h.sec <= 0) return 0;
  return int64_t{h.fps} * h.sec;
}

std::array<uint8_t, kMovieHeaderBytes> EncodeMovieHeader(const MovieHeader& h) {
  std::array<uint8_t, kMovieHeaderBytes> b{};
  std::copy(kMovieMagic.begin(), kMovieMagic.end(), b.begin());
  StoreLE32(&b[4], kMovieVersion);
  StoreLE32(&b[8], h.method);
  StoreLE32(&b[12], h.bitCount);
  StoreLE32(&b[16], h.width);
  StoreLE32(&b[20], h.height);
  StoreLE32(&b[24], h.fps);
  StoreLE32(&b[28], h.sec);
  return b;
}

std::optional<MovieHeader> DecodeMovieHeader(std::span<const uint8_t, kMovieHeaderBytes> b) {
  if (!std::equal(kMovieMagic.begin(), kMovieMagic.end(), b.begin())) return std::nullopt;
  if (LoadLE32(&b[4]) != kMovieVersion) return std::nullopt;
  MovieHeader h;
  h.method = LoadLE32(&b[8]);
  h.bitCount = LoadLE32(&b[12]);
  h.width = LoadLE32(&b[16]);
  h.height = LoadLE32(&b[20]);
  h.fps = LoadLE32(&b[24]);
  h.sec = LoadLE32(&b[28]);
  return h;
}

bool HeaderFieldsInRange(const MovieHeader& h) {
  return h.width >= 1 && h.height >= 1 && h.fps >= 1 && h.sec >= 1 && h.method >= 0 &&
         h.method <= 2;
}

bool HeaderBitCountUsable(int32_t bitCount) {
  return bitCount >= 8 && bitCount <= 32 && bitCount % 8 == 0;
}

bool IsValidRegionWidth(int32_t width, int32_t bitsPerPixel, int32_t method) {
  if (width < 1 || !HeaderBitCountUsable(bitsPerPixel) || method < 0 || method > 2) return false;
  if (method == 2 && bitsPerPixel == 8) return false;
  const int64_t rowBytes = int64_t{width} * (bitsPerPixel / 8);
  return rowBytes % (method == 0 ? 2 : 4) == 0;
}

int32_t ValidRegionWidth(int32_t width, int32_t bitsPerPixel, int32_t method) {
  // Every alignment is at most 4 pixels apart, so a short walk down finds it.
  for (int32_t w = width; w >= 1 && width - w < 4; --w) {
    if (IsValidRegionWidth(w, bitsPerPixel, method)) return w;
  }
  return 0;
}

}  // namespace velmora
