// An independent RIFF walker for golden-structure tests: parses written
// bytes into a tree of lists and chunks, failing the test on a size that
// runs past its parent. Reads through a ByteSource, so it also walks the
// sparse sink of the large-file test.
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

// Top-level pieces; `error` is set to a description of the first fault.
std::vector<Node> WalkRiff(ByteSource& src, uint64_t size, std::string& error);

uint32_t Read32(ByteSource& src, uint64_t at);
uint64_t Read64(ByteSource& src, uint64_t at);
std::vector<uint8_t> ReadBytes(ByteSource& src, uint64_t at, size_t n);

}  // namespace velmora::avi::test
