#include "conversion/avi5/byte_sink.h"

#include <cstring>

#include "engine/byte_source.h"

namespace velmora::avi {

bool MemoryByteSink::Write(const void* src, size_t n) {
  if (pos_ + n > bytes_.size()) bytes_.resize(pos_ + n);
  if (n) std::memcpy(bytes_.data() + pos_, src, n);
  pos_ += n;
  return true;
}

bool MemoryByteSink::Seek(uint64_t position) {
  if (position > bytes_.size()) return false;
  pos_ = position;
  return true;
}

namespace {
constexpr size_t kFileBuffer = 4 << 20;
}

std::unique_ptr<FileByteSink> FileByteSink::Create(const std::string& utf8Path) {
  std::FILE* f = OpenFileUtf8(utf8Path, "wb");
  if (!f) return nullptr;
  return std::unique_ptr<FileByteSink>(new FileByteSink(f));
}

FileByteSink::FileByteSink(std::FILE* f) : f_(f) { std::setvbuf(f_, nullptr, _IOFBF, kFileBuffer); }

FileByteSink::~FileByteSink() { Finish(); }

bool FileByteSink::Write(const void* src, size_t n) {
  if (failed_ || !f_) return false;
  if (n && std::fwrite(src, 1, n, f_) != n) {
    failed_ = true;
    return false;
  }
  pos_ += n;
  if (pos_ > end_) end_ = pos_;
  return true;
}

bool FileByteSink::Seek(uint64_t position) {
  if (failed_ || !f_ || position > end_) return false;
#ifdef _WIN32
  const bool ok = _fseeki64(f_, static_cast<int64_t>(position), SEEK_SET) == 0;
#else
  const bool ok = fseeko(f_, static_cast<off_t>(position), SEEK_SET) == 0;
#endif
  if (!ok) return false;
  pos_ = position;
  return true;
}

bool FileByteSink::Finish() {
  if (!f_) return !failed_;
  if (std::fclose(f_) != 0) failed_ = true;
  f_ = nullptr;
  return !failed_;
}

}  // namespace velmora::avi
