// Whole-file read and write for tests (UTF-8 paths).
#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "engine/byte_source.h"
#include "engine/file_idioms.h"

namespace velmora::test {

inline void WriteFile(const std::string& path, const std::vector<uint8_t>& bytes) {
  const UniqueCFile f(OpenFileUtf8(path, "wb"));
  if (f && !bytes.empty()) std::fwrite(bytes.data(), 1, bytes.size(), f.get());
}

inline std::vector<uint8_t> ReadFile(const std::string& path) {
  std::vector<uint8_t> out;
  const UniqueCFile f(OpenFileUtf8(path, "rb"));
  if (!f) return out;
  uint8_t buf[65536];
  size_t n;
  while ((n = std::fread(buf, 1, sizeof buf, f.get())) > 0) out.insert(out.end(), buf, buf + n);
  return out;
}

}  // namespace velmora::test
