// Checks every cross-reference of a written AVI 2.0 file: super index to
// standard indexes, standard index entries to chunks, idx1 to chunks, the
// frame counts in avih, strh and dmlh. Returns what it found, with the
// first inconsistency in `error`.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "conversion/avi5/tests/riff_tree.h"

namespace velmora::avi::test {

struct StreamSummary {
  std::string type;               // "vids" / "auds"
  uint32_t strhLength = 0;
  uint32_t strhScale = 0, strhRate = 0;
  uint32_t handler = 0;
  std::vector<uint8_t> strf;
  std::string name;
  uint32_t superEntries = 0;
  std::vector<uint64_t> chunkData;  // data positions, from the standard indexes
  std::vector<uint32_t> chunkSize;
  std::vector<bool> chunkKey;
};

struct AviSummary {
  std::string error;
  std::vector<Node> top;
  uint32_t avihFrames = 0;
  uint32_t dmlhFrames = 0;
  uint32_t idx1Entries = 0;
  std::vector<StreamSummary> streams;
};

AviSummary CheckOpenDml(ByteSource& src, uint64_t size);

}  // namespace velmora::avi::test
