#include "engine/win/movie_writer_api.h"

#include <filesystem>

#include "engine/win/text_encoding.h"

namespace velmora::win {
namespace {

uint64_t TotalPhysicalMemory() {
  MEMORYSTATUSEX ms{};
  ms.dwLength = sizeof ms;
  return ::GlobalMemoryStatusEx(&ms) ? ms.ullTotalPhys : 0;
}

uint32_t AllocationGranularity() {
  SYSTEM_INFO si{};
  ::GetSystemInfo(&si);
  return si.dwAllocationGranularity;
}

HANDLE CreateMapping(HANDLE file, uint64_t size) {
  return ::CreateFileMappingW(file, nullptr, PAGE_READWRITE, static_cast<DWORD>(size >> 32),
                              static_cast<DWORD>(size & 0xFFFFFFFFu), nullptr);
}

void* MapView(HANDLE mapping, uint64_t offset, size_t bytes) {
  return ::MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, static_cast<DWORD>(offset >> 32),
                         static_cast<DWORD>(offset & 0xFFFFFFFFu), bytes);
}

BOOL Write(HANDLE file, const void* data, DWORD bytes, DWORD* written) {
  return ::WriteFile(file, data, bytes, written, nullptr);
}

uint64_t FreeDiskBytes(const std::string& utf8Path) {
  std::error_code ec;
  const auto folder =
      std::filesystem::absolute(std::filesystem::path(Widen(utf8Path)), ec).parent_path();
  ULARGE_INTEGER available{};
  if (ec || !::GetDiskFreeSpaceExW(folder.c_str(), &available, nullptr, nullptr)) return UINT64_MAX;
  return available.QuadPart;
}

DWORD ClaimSpace(HANDLE file, uint64_t bytes) {
  FILE_ALLOCATION_INFO info{};
  info.AllocationSize.QuadPart = static_cast<LONGLONG>(bytes);
  return ::SetFileInformationByHandle(file, FileAllocationInfo, &info, sizeof info)
             ? 0
             : ::GetLastError();
}

}  // namespace

const MovieWriterApi& SystemMovieWriterApi() {
  static const MovieWriterApi api{&TotalPhysicalMemory,
                                  &AllocationGranularity,
                                  &CreateMapping,
                                  &MapView,
                                  &Write,
                                  &FreeDiskBytes,
                                  &ClaimSpace};
  return api;
}

UniqueFile OpenMovieFile(const std::string& utf8Path, DWORD extraFlags) {
  return UniqueFile(::CreateFileW(
      Widen(utf8Path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
      FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN | extraFlags, nullptr));
}

DWORD CutFile(HANDLE file, uint64_t length) {
  LARGE_INTEGER pos{};
  pos.QuadPart = static_cast<LONGLONG>(length);
  if (!::SetFilePointerEx(file, pos, nullptr, FILE_BEGIN) || !::SetEndOfFile(file)) {
    return ::GetLastError();
  }
  return 0;
}

}  // namespace velmora::win
