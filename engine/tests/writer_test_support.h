// Helpers for the movie-writer tests: a recording through the real loop with
// fake clock and source into any sink, the same recording into memory for
// the expected bytes, and a system-call table whose calls fail on demand.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "engine/capture_interfaces.h"
#include "engine/recording_loop.h"
#include "engine/win/movie_writer_api.h"

namespace velmora::test {

struct Take {
  RecordingSession session{.width = 16, .height = 8, .fps = 10, .sec = 2, .method = 1,
                           .bitCount = 32};
  double grabMs = 30;
  bool worstCase = false;
  int32_t cancelAtFrame = -1;
};

// Runs the loop for `take` into `sink` (path handed to Open); returns its code.
int32_t Record(MovieSink& sink, const std::string& path, const Take& take);
// The bytes the same take produces in memory.
std::vector<uint8_t> RecordInMemory(const Take& take);
// Sizes of the frame records behind the header of `movie`.
std::vector<uint32_t> RecordSizes(const std::vector<uint8_t>& movie);
// Frames read back with MovieReader; `readResult` gets the code that ended reading.
std::vector<std::vector<uint8_t>> ReadBack(const std::vector<uint8_t>& movie, int32_t* readResult);

// Faults the table below injects; Reset() before each test.
struct Faults {
  uint64_t physicalMemory = 0;  // 0: the real figure
  int64_t failMapViewAt = -1;   // 0-based call number that fails
  int64_t failWriteAt = -1;
  bool failCreateMapping = false;
  DWORD error = ERROR_NOT_ENOUGH_MEMORY;
  int64_t mapViewCalls = 0, writeCalls = 0, createMappingCalls = 0;
  std::vector<uint64_t> viewOffsets;
  void Reset() { *this = Faults{}; }
};
Faults& InjectedFaults();
const win::MovieWriterApi& FaultyApi();

uint64_t FileSize(const std::string& utf8Path);

}  // namespace velmora::test
