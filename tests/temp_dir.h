// A fresh folder per test, removed afterwards; paths handed out as UTF-8.
#pragma once
#include <filesystem>
#include <random>
#include <string>

#include "engine/file_idioms.h"

namespace velmora::test {

class TempDir {
 public:
  TempDir() {
    std::random_device rd;
    dir_ = std::filesystem::temp_directory_path() /
           ("velmora-test-" + std::to_string(rd()) + std::to_string(rd()));
    std::filesystem::create_directories(dir_);
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(dir_, ec);
  }
  std::string Path(const std::string& utf8Name) const {
    return Utf8FromPath(dir_ / PathFromUtf8(utf8Name));
  }
  static std::filesystem::path Fs(const std::string& utf8) { return PathFromUtf8(utf8); }

 private:
  std::filesystem::path dir_;
};

// Whether a file or folder named in UTF-8 exists.
inline bool Exists(const std::string& utf8) { return std::filesystem::exists(TempDir::Fs(utf8)); }

}  // namespace velmora::test
