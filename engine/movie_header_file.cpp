#include "engine/movie_header_file.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "engine/byte_order.h"
#include "engine/byte_source.h"
#include "engine/file_idioms.h"
#include "engine/result_codes.h"

namespace velmora {
namespace {}  // namespace

int32_t QueryMovieHeader(const std::string& path, MovieHeader* out) {
  std::error_code ec;
  const auto p = PathFromUtf8(path);
  if (!std::filesystem::exists(p, ec)) return kErrNoFile;
  const auto size = std::filesystem::file_size(p, ec);
  if (ec || size == 0) return kErrZeroSize;
  UniqueCFile f(OpenFileUtf8(path, "rb"));
  if (!f) return kErrCannotOpen;
  uint8_t raw[kMovieHeaderBytes];
  if (std::fread(raw, 1, sizeof raw, f.get()) != sizeof raw) return kErrBrokenFile;
  const auto h = DecodeMovieHeader(std::span<const uint8_t, kMovieHeaderBytes>(raw));
  if (!h || !HeaderFieldsInRange(*h)) return kErrBrokenFile;
  if (out && HeaderBitCountUsable(h->bitCount)) *out = *h;
  return 0;
}

void PatchMovieHeader(const std::string& path, int32_t width, int32_t height, int32_t bitCount,
                      int32_t fps, int32_t sec) {
  UniqueCFile f(OpenFileUtf8(path, "r+b"));
  if (!f) return;
  uint8_t raw[kMovieHeaderBytes] = {};
  // A short file keeps zeros where it had no bytes; the patch still writes 32.
  (void)std::fread(raw, 1, sizeof raw, f.get());
  auto patch = [&](size_t offset, int32_t v) {
    if (v != 0) StoreLE32(raw + offset, v);
  };
  patch(12, bitCount);
  patch(16, width);
  patch(20, height);
  patch(24, fps);
  patch(28, sec);
  std::fseek(f.get(), 0, SEEK_SET);
  std::fwrite(raw, 1, sizeof raw, f.get());
}

}  // namespace velmora
