// Sequential input for readers that must treat their bytes as hostile: a file
// or a memory block behind one small interface, so the reader and its fuzzer
// run the same code.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

namespace velmora {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // Reads up to `n` bytes; returns how many were read (fewer only at the end).
  virtual size_t Read(void* dst, size_t n) = 0;
  // Moves to an absolute position; false when that is not possible.
  virtual bool Seek(uint64_t position) = 0;
};

class MemoryByteSource final : public ByteSource {
 public:
  explicit MemoryByteSource(std::span<const uint8_t> bytes) : bytes_(bytes) {}
  size_t Read(void* dst, size_t n) override;
  bool Seek(uint64_t position) override;

 private:
  std::span<const uint8_t> bytes_;
  uint64_t pos_ = 0;
};

// A file opened for binary reading by a UTF-8 path (wide path on Windows).
class FileByteSource final : public ByteSource {
 public:
  // Returns null when the file cannot be opened.
  static std::unique_ptr<FileByteSource> Open(const std::string& utf8Path);
  ~FileByteSource() override;
  size_t Read(void* dst, size_t n) override;
  bool Seek(uint64_t position) override;

 private:
  explicit FileByteSource(std::FILE* f) : f_(f) {}
  std::FILE* f_;
};

// fopen for a UTF-8 path with a C mode string, wide on Windows.
std::FILE* OpenFileUtf8(const std::string& utf8Path, const char* mode);

// Files are replaced, never overwritten in place: an existing file is deleted
// first (read-only or not), then created and written in one write. 0 on
// success, -1 on any failure.
int32_t ReplaceFileUtf8(const std::string& utf8Path, std::span<const uint8_t> bytes);

}  // namespace velmora
