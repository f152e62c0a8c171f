#include "engine/tests/writer_test_support.h"

#include <cstring>
#include <filesystem>
#include <memory>

#include "engine/byte_order.h"
#include "engine/frame_codec.h"
#include "engine/memory_movie_sink.h"
#include "engine/movie_reader.h"
#include "engine/tests/fake_capture.h"
#include "engine/tests/temp_dir.h"

namespace velmora::test {

int32_t Record(MovieSink& sink, const std::string& path, const Take& take) {
  EventLog log;
  FakeClock clock(log);
  FakeSource source(log, clock);
  source.grabMs = take.grabMs;
  source.worstCase = take.worstCase;
  RecordingListener listener(log);
  listener.cancelAtFrame = take.cancelAtFrame;
  RecordingSession session = take.session;
  RecordingRequest request{.path = path};
  RecordingPorts ports{clock, &source, sink, listener, &CompressFrame};
  return RunRecordingLoop(session, request, ports);
}

std::vector<uint8_t> RecordInMemory(const Take& take) {
  MemoryMovieSink mem;
  Record(mem, "memory", take);
  return mem.Bytes();
}

std::vector<uint32_t> RecordSizes(const std::vector<uint8_t>& movie) {
  std::vector<uint32_t> sizes;
  for (size_t pos = 32; pos + 8 <= movie.size() && std::memcmp(movie.data() + pos, "FRAM", 4) == 0;) {
    const uint32_t n = LoadLE32U(movie.data() + pos + 4);
    sizes.push_back(n);
    pos += 8 + n;
  }
  return sizes;
}

std::vector<std::vector<uint8_t>> ReadBack(const std::vector<uint8_t>& movie, int32_t* readResult) {
  MovieReader r;
  std::vector<std::vector<uint8_t>> frames;
  *readResult = r.Open(std::make_unique<MemoryByteSource>(movie));
  if (*readResult != 0) return frames;
  while ((*readResult = r.Next()) == 0) frames.emplace_back(r.Current(), r.Current() + r.FrameSize());
  return frames;
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
  if (f.mapViewCalls++ == f.failMapViewAt) {
    ::SetLastError(f.error);
    return nullptr;
  }
  return win::SystemMovieWriterApi().mapView(mapping, offset, bytes);
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
  static const win::MovieWriterApi api{&Physical, &Granularity, &CreateMapping, &MapView, &Write};
  return api;
}

uint64_t FileSize(const std::string& utf8Path) {
  std::error_code ec;
  const auto n = std::filesystem::file_size(TempDir::Fs(utf8Path), ec);
  return ec ? UINT64_MAX : n;
}

}  // namespace velmora::test
