// Movies and AVIs for the conversion tests: patterned movies of any method
// and depth written to disk, and an AVI's video frames read back.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "conversion/avi5/avi_reader.h"
#include "engine/movie_format.h"
#include "tests/temp_dir.h"

namespace velmora::test {

struct Movie {
  MovieHeader header;
  std::vector<std::vector<uint8_t>> frames;
};

// One second: fps frames whose last quarter of rows changes per frame (so every
// frame codes shorter than its pixels); 8-bit frames carry a colour table,
// 32-bit pixels an unused byte of 0.
Movie MakeMovie(int32_t method, int32_t bits, int32_t w, int32_t h, int32_t fps);
std::string WriteMovie(const TempDir& dir, const std::string& name, const Movie& m);

struct AviFrames {
  avi::AviStatus status;
  avi::AviVideoStream video;
  std::vector<std::vector<uint8_t>> frames;
};
AviFrames ReadAvi(const std::string& path);

// With VELMORA_KEEP_AVIS set to a folder (tests/avi_tools_check.sh), keeps
// `avi` there as NAME-FRAMES.avi for ffprobe, and `decoded`, when given, as
// NAME-FRAMES.raw for ffmpeg's decoded frames to be compared with.
void KeepForTools(const std::string& avi, const std::string& name, size_t frames,
                  const std::vector<uint8_t>& decoded = {});

// Rows in the opposite order.
std::vector<uint8_t> FlipRows(const std::vector<uint8_t>& f, size_t stride);

// What a decoder returns for a bottom-up frame whose rows lie `stride` bytes
// apart: rows top-down and packed, 8-bit pixels looked up as BGR in the
// colour table that follows the rows.
std::vector<uint8_t> DecodedPicture(const std::vector<uint8_t>& f, int32_t w, int32_t h,
                                    int32_t bits, size_t stride);
// Every frame of a Type1 movie (rows not padded) as a decoder returns it.
std::vector<uint8_t> DecodedMovie(const Movie& m);

// What a 24-bit bottom-up picture of frame `f` of `m` holds: Type0 rows
// turned over, 8-bit pixels looked up in the frame's colour table.
std::vector<uint8_t> As24Bit(const Movie& m, const std::vector<uint8_t>& f);

}  // namespace velmora::test
