// An independent RIFF walker (reading through a ByteSource, so it also walks
// the large-file test's sparse sink) and a checker of every cross-reference
// of a written AVI 2.0 file: super index to standard indexes, standard index
// entries to chunks, idx1 to chunks, the frame counts in avih, strh and dmlh.
// Returns what it found, with the first inconsistency in `error`.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "engine/byte_source.h"

namespace velmora::avi::test {

struct Node {
  std::string id;     // "RIFF"/"LIST" for lists, else the chunk code
  std::string form;   // list form type
  uint64_t at = 0;    // header position
  uint64_t data = 0;  // data position (after the size; for lists, at the form type)
  uint32_t size = 0;
  std::vector<Node> kids;
  bool IsList() const { return id == "RIFF" || id == "LIST"; }
  // Children with this code (or list form).
  std::vector<const Node*> All(const std::string& code) const;
  const Node* First(const std::string& code) const;
};

uint32_t Read32(ByteSource& src, uint64_t at);
std::vector<uint8_t> ReadBytes(ByteSource& src, uint64_t at, size_t n);

struct StreamSummary {
  std::string type;  // "vids" / "auds"
  uint32_t strhLength = 0;
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
