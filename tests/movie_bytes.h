// Builds movie files in memory for reader tests: header, frame records, and
// helpers to damage them.
#pragma once
#include <cstdint>
#include <vector>

#include "engine/movie_format.h"

namespace velmora::test {

struct MovieBytes {
  std::vector<uint8_t> bytes;
  void Header(const MovieHeader& h);
  void Record(const std::vector<uint8_t>& payload);  // "FRAM", size, payload
  void RawRecord(const char tag[4], uint32_t size, const std::vector<uint8_t>& payload);
};

// Encodes `frames` (each F bytes) as a movie with CompressFrame.
std::vector<uint8_t> EncodeMovie(const MovieHeader& h,
                                 const std::vector<std::vector<uint8_t>>& frames);

}  // namespace velmora::test
