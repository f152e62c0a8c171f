#include "engine/tests/writer_test_support.h"

#include <filesystem>

#include "tests/temp_dir.h"

namespace velmora::test {

int32_t Record(MovieSink& writer, const std::string& path, Take take) {
  Rig r;
  take(r);
  r.request.path = path;
  return r.Run(&writer);
}

std::vector<uint8_t> RecordInMemory(Take take) {
  Rig r;
  take(r);
  r.Run();
  return r.Bytes();
}

Faults& InjectedFaults() {
  static Faults f;
  return f;
}

namespace {

uint64_t Physical() {
  auto& f = InjectedFaults();
  return f.physicalMemory ? f.physicalMemory : win::SystemMovieWriterApi().totalPhysicalMemory();
}

HANDLE CreateMapping(HANDLE file, uint64_t size) {
  auto& f = InjectedFaults();
  ++f.createMappingCalls;
  if (f.failCreateMapping) {
    ::SetLastError(f.error);
    return nullptr;
  }
  return win::SystemMovieWriterApi().createMapping(file, size);
}

void* MapView(HANDLE mapping, uint64_t offset, size_t bytes) {
  auto& f = InjectedFaults();
  f.viewOffsets.push_back(offset);
  const int64_t call = f.mapViewCalls++;
  if (call == f.failMapViewAt) {
    ::SetLastError(f.error);
    return nullptr;
  }
  if (call == f.readOnlyViewAt) {
    return ::MapViewOfFile(mapping, FILE_MAP_READ, static_cast<DWORD>(offset >> 32),
                           static_cast<DWORD>(offset & 0xFFFFFFFFu), bytes);
  }
  return win::SystemMovieWriterApi().mapView(mapping, offset, bytes);
}

uint64_t FreeDiskBytes(const std::string& path) {
  const auto& f = InjectedFaults();
  return f.freeDiskBytes >= 0 ? static_cast<uint64_t>(f.freeDiskBytes)
                              : win::SystemMovieWriterApi().freeDiskBytes(path);
}

DWORD ClaimSpace(HANDLE file, uint64_t bytes) {
  return InjectedFaults().claimNothing ? 0 : win::SystemMovieWriterApi().claimSpace(file, bytes);
}

BOOL Write(HANDLE file, const void* data, DWORD bytes, DWORD* written) {
  auto& f = InjectedFaults();
  if (f.writeCalls++ == f.failWriteAt) {
    ::SetLastError(f.error);
    return FALSE;
  }
  return win::SystemMovieWriterApi().writeFile(file, data, bytes, written);
}

uint32_t Granularity() { return win::SystemMovieWriterApi().allocationGranularity(); }

}  // namespace

const win::MovieWriterApi& FaultyApi() {
  static const win::MovieWriterApi api{&Physical, &Granularity,   &CreateMapping, &MapView,
                                       &Write,    &FreeDiskBytes, &ClaimSpace};
  return api;
}

uint64_t FileSize(const std::string& utf8Path) {
  std::error_code ec;
  const auto n = std::filesystem::file_size(TempDir::Fs(utf8Path), ec);
  return ec ? UINT64_MAX : n;
}

}  // namespace velmora::test
