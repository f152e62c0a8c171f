// Output for the AVI writer: a file or a memory block behind one small
// interface, with 64-bit positions so files past 4 GiB work. Writers seek
// back to patch sizes and counts they could not know when they wrote them.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace velmora::avi {

class ByteSink {
 public:
  virtual ~ByteSink() = default;
  // Writes all `n` bytes at the current position; false on any failure.
  virtual bool Write(const void* src, size_t n) = 0;
  virtual uint64_t Position() const = 0;
  // Moves to an absolute position at or before the end written so far.
  virtual bool Seek(uint64_t position) = 0;
  virtual uint64_t End() const = 0;
  // Makes everything written durable (a file is flushed and closed); false
  // when some write failed on the way.
  virtual bool Finish() { return true; }
};

class MemoryByteSink final : public ByteSink {
 public:
  bool Write(const void* src, size_t n) override;
  uint64_t Position() const override { return pos_; }
  bool Seek(uint64_t position) override;
  uint64_t End() const override { return bytes_.size(); }
  const std::vector<uint8_t>& Bytes() const { return bytes_; }

 private:
  std::vector<uint8_t> bytes_;
  uint64_t pos_ = 0;
};

// A file created (or truncated) for binary writing by a UTF-8 path, with a
// large buffer: frames arrive in sizes of a megabyte or more.
class FileByteSink final : public ByteSink {
 public:
  // Null when the file cannot be created.
  static std::unique_ptr<FileByteSink> Create(const std::string& utf8Path);
  ~FileByteSink() override;
  bool Write(const void* src, size_t n) override;
  uint64_t Position() const override { return pos_; }
  bool Seek(uint64_t position) override;
  uint64_t End() const override { return end_; }
  bool Finish() override;

 private:
  explicit FileByteSink(std::FILE* f);
  std::FILE* f_;
  uint64_t pos_ = 0;
  uint64_t end_ = 0;
  bool failed_ = false;
};

}  // namespace velmora::avi
