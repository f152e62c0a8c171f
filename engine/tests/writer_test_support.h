// Helpers for the movie-writer tests: a recording through the real loop into
// a writer, the same recording in memory for the expected bytes, and a
// system-call table whose calls fail on demand.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "engine/tests/recording_rig.h"
#include "engine/win/movie_writer_api.h"

namespace velmora::test {

// Configures a rig (the default: 16 x 8 x 32 bits, F = 512, 20 slots).
using Take = void (*)(Rig&);
inline void Small(Rig& r) { r.session.width = 16, r.session.height = 8; }

int32_t Record(MovieSink& writer, const std::string& path, Take take = &Small);
std::vector<uint8_t> RecordInMemory(Take take = &Small);

// Faults the table below injects; Reset() before each test.
struct Faults {
  uint64_t physicalMemory = 0;  // 0: the real figure
  int64_t failMapViewAt = -1;   // 0-based call number that fails
  int64_t failWriteAt = -1;
  bool failCreateMapping = false;
  int64_t readOnlyViewAt = -1;  // 0-based call number that maps a view writes fault in
  int64_t freeDiskBytes = -1;   // -1: the real figure
  bool claimNothing = false;    // the file system allocates only on first write
  DWORD error = ERROR_NOT_ENOUGH_MEMORY;
  int64_t mapViewCalls = 0, writeCalls = 0, createMappingCalls = 0;
  std::vector<uint64_t> viewOffsets;
  void Reset() { *this = Faults{}; }
};
Faults& InjectedFaults();
const win::MovieWriterApi& FaultyApi();

uint64_t FileSize(const std::string& utf8Path);

}  // namespace velmora::test
