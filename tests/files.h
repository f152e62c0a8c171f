// Whole-file read and write for tests (UTF-8 paths).
#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "engine/byte_source.h"

namespace velmora::test {

inline void WriteFile(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::FILE* f = OpenFileUtf8(path, "wb");
  if (!f) return;
  if (!bytes.empty()) std::fwrite(bytes.data(), 1, bytes.size(), f);
  std::fclose(f);
}

inline std::vector<uint8_t> ReadFile(const std::string& path) {
  std::vector<uint8_t> out;
  std::FILE* f = OpenFileUtf8(path, "rb");
  if (!f) return out;
  uint8_t buf[65536];
  size_t n;
  while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) out.insert(out.end(), buf, buf + n);
  std::fclose(f);
  return out;
}

}  // namespace velmora::test
