#include "tests/conversion_movies.h"

#include <algorithm>
#include <cstdlib>

#include "tests/avi_bytes.h"
#include "tests/files.h"
#include "tests/movie_bytes.h"

namespace velmora::test {

Movie MakeMovie(int32_t method, int32_t bits, int32_t w, int32_t h, int32_t fps) {
  Movie m{{method, bits, w, h, fps, 1}, {}};
  const size_t f = size_t(FrameBytes(w, h, bits));
  const size_t px = f - (bits == 8 ? 1024 : 0);
  const auto table = avi::test::PatternFrame(1024, 99);
  for (int i = 0; i < fps; ++i) {
    std::vector<uint8_t> frame(f, 0);
    const auto moving = avi::test::PatternFrame(px / 4, i);
    std::copy(moving.begin(), moving.end(), frame.begin() + long(px - px / 4));
    if (bits == 8) std::copy(table.begin(), table.end(), frame.begin() + long(px));
    if (bits == 32)
      for (size_t k = 3; k < f; k += 4) frame[k] = 0;  // the unused byte stays 0 through GDI
    m.frames.push_back(frame);
  }
  return m;
}

std::string WriteMovie(const TempDir& dir, const std::string& name, const Movie& m) {
  const std::string path = dir.Path(name);
  WriteFile(path, EncodeMovie(m.header, m.frames));
  return path;
}

AviFrames ReadAvi(const std::string& path) {
  AviFrames out{};
  const auto bytes = ReadFile(path);
  MemoryByteSource src(bytes);
  out.status = avi::ReadAviVideo(src, bytes.size(), out.video);
  for (const auto& c : out.video.chunks)
    if (!c.palette)
      out.frames.emplace_back(bytes.begin() + long(c.offset),
                              bytes.begin() + long(c.offset + c.size));
  return out;
}

void KeepForTools(const std::string& avi, const std::string& name, size_t frames,
                  const std::vector<uint8_t>& decoded) {
  const char* folder = std::getenv("VELMORA_KEEP_AVIS");
  if (!folder || !*folder) return;
  const std::string base = std::string(folder) + "/" + name + "-" + std::to_string(frames);
  WriteFile(base + ".avi", ReadFile(avi));
  if (!decoded.empty()) WriteFile(base + ".raw", decoded);
}

std::vector<uint8_t> FlipRows(const std::vector<uint8_t>& f, size_t stride) {
  std::vector<uint8_t> out;
  for (size_t row = f.size() / stride; row-- > 0;)
    out.insert(out.end(), f.begin() + long(row * stride), f.begin() + long((row + 1) * stride));
  return out;
}

std::vector<uint8_t> DecodedPicture(const std::vector<uint8_t>& f, int32_t w, int32_t h,
                                    int32_t bits, size_t stride) {
  const size_t row = size_t(w) * size_t(bits) / 8;
  const uint8_t* table = f.data() + stride * size_t(h);
  std::vector<uint8_t> out;
  for (size_t y = size_t(h); y-- > 0;) {
    const uint8_t* p = f.data() + y * stride;
    if (bits != 8) out.insert(out.end(), p, p + row);
    for (size_t x = 0; bits == 8 && x < row; ++x)
      out.insert(out.end(), table + p[x] * 4, table + p[x] * 4 + 3);
  }
  return out;
}

std::vector<uint8_t> DecodedMovie(const Movie& m) {
  const MovieHeader& h = m.header;
  std::vector<uint8_t> out;
  for (const auto& f : m.frames) {
    const auto d =
        DecodedPicture(f, h.width, h.height, h.bitCount, size_t(h.width * h.bitCount / 8));
    out.insert(out.end(), d.begin(), d.end());
  }
  return out;
}

std::vector<uint8_t> As24Bit(const Movie& m, const std::vector<uint8_t>& f) {
  const MovieHeader& h = m.header;
  const size_t pixels = size_t(h.width) * size_t(h.height);
  const std::vector<uint8_t> rows =
      h.bitCount == 32 && h.method == 0 ? FlipRows(f, size_t(h.width) * 4) : f;
  std::vector<uint8_t> out;
  for (size_t p = 0; p < pixels; ++p) {
    const uint8_t* bgr = h.bitCount == 32 ? &rows[p * 4] : &f[pixels + size_t(f[p]) * 4];
    out.insert(out.end(), bgr, bgr + 3);
  }
  return out;
}

}  // namespace velmora::test
