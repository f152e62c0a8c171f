// Portable file idioms: a UTF-8 name as a filesystem path (so a Japanese
// name means the same file on every platform), and a C stream that closes
// itself on every return path.
#pragma once
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace velmora {

inline std::filesystem::path PathFromUtf8(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

inline std::string Utf8FromPath(const std::filesystem::path& path) {
  const std::u8string u8 = path.u8string();
  return std::string(u8.begin(), u8.end());
}

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};
using UniqueCFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace velmora
