// Reads the video stream of an existing AVI (1.0 or OpenDML, with 'AVIX'
// pieces) so the sound merge can copy it into a new file. The file is
// hostile: every list and chunk is checked against its parent and the
// file's end; anything that does not fit is kAviBrokenAvi.
#pragma once
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "conversion/avi5/avi_status.h"
#include "engine/byte_source.h"

namespace velmora::avi {

struct AviVideoChunk {
  uint64_t offset;  // of the chunk's data
  uint32_t size;
  bool palette;  // '##pc' palette change rather than a frame
  bool key;
};

struct AviVideoStream {
  int32_t width = 0, height = 0;
  uint32_t handler = 0, scale = 0, rate = 0;
  int32_t quality = -1;
  bool compressed = false;
  std::vector<uint8_t> strf;
  std::string name;
  std::vector<AviVideoChunk> chunks;  // in file order
};

AviStatus ReadAviVideo(ByteSource& src, uint64_t fileSize, AviVideoStream& out);

}  // namespace velmora::avi
