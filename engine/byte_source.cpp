#include "engine/byte_source.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "engine/file_idioms.h"

namespace velmora {

size_t MemoryByteSource::Read(void* dst, size_t n) {
  // A zero-length read may come with a null destination (an empty vector's
  // data()), which memcpy must never see.
  if (n == 0 || pos_ >= bytes_.size()) return 0;
  const size_t take = std::min<uint64_t>(n, bytes_.size() - pos_);
  std::memcpy(dst, bytes_.data() + pos_, take);
  pos_ += take;
  return take;
}

bool MemoryByteSource::Seek(uint64_t position) {
  pos_ = position;
  return true;
}

std::FILE* OpenFileUtf8(const std::string& utf8Path, const char* mode) {
#ifdef _WIN32
  const std::filesystem::path p = PathFromUtf8(utf8Path);
  std::wstring wmode(mode, mode + std::strlen(mode));
  return _wfopen(p.c_str(), wmode.c_str());
#else
  return std::fopen(utf8Path.c_str(), mode);
#endif
}

int32_t ReplaceFileUtf8(const std::string& utf8Path, std::span<const uint8_t> bytes) {
  const std::filesystem::path path = PathFromUtf8(utf8Path);
  std::error_code ec;
  if (std::filesystem::exists(path, ec)) {
    std::filesystem::permissions(path, std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add, ec);
    if (!std::filesystem::remove(path, ec)) return -1;
  }
  std::FILE* f = OpenFileUtf8(utf8Path, "wb");
  if (!f) return -1;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
  return std::fclose(f) == 0 && written ? 0 : -1;
}

std::unique_ptr<FileByteSource> FileByteSource::Open(const std::string& utf8Path) {
  std::FILE* f = OpenFileUtf8(utf8Path, "rb");
  if (!f) return nullptr;
  return std::unique_ptr<FileByteSource>(new FileByteSource(f));
}

FileByteSource::~FileByteSource() { std::fclose(f_); }

size_t FileByteSource::Read(void* dst, size_t n) { return std::fread(dst, 1, n, f_); }

bool FileByteSource::Seek(uint64_t position) {
  if (position > static_cast<uint64_t>(INT64_MAX)) return false;
#ifdef _WIN32
  return _fseeki64(f_, static_cast<int64_t>(position), SEEK_SET) == 0;
#else
  return fseeko(f_, static_cast<off_t>(position), SEEK_SET) == 0;
#endif
}

}  // namespace velmora
