// One recording through the real loop with the fakes, into the logging
// memory sink or any other sink (the file writers), plus readers of the
// resulting movie bytes.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "engine/recording_loop.h"
#include "engine/tests/fake_capture.h"

namespace velmora::test {

struct Rig {
  std::string log;
  FakeClock clock{log};
  FakeSource source{log, clock};
  LoggingSink sink{log};
  RecordingListener listener{log};
  // 8 x 4 x 32 bits: F = 128; 20 slots of 100 ms.
  RecordingSession session{
      .x = 5, .y = 7, .width = 8, .height = 4, .fps = 10, .sec = 2, .method = 1, .bitCount = 32};
  RecordingRequest request{.path = "movie.QRK"};
  // The engine's encoder unless a test needs another (QRX.dll is replaceable).
  CompressFn compress = nullptr;

  // Runs into `other` when given, else into the memory sink.
  int32_t Run(MovieSink* other = nullptr);
  const std::vector<uint8_t>& Bytes() const { return sink.mem.Bytes(); }
};

// The simplest exact encoder: a run ends wherever equality changes. It
// reaches the format's worst case (1.5 x F + 8) on alternating frames, which
// the engine's own encoder avoids, so tests of buffer and file growth use it.
int32_t SplitEveryChange(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units);

// Payload sizes of the records behind the header, up to the first non-record.
std::vector<uint32_t> RecordSizes(const std::vector<uint8_t>& movie);
// 32 + every record's head and payload.
uint64_t HeaderAndRecordBytes(const std::vector<uint8_t>& movie);
// The frames MovieReader decodes; `end` gets the code that ended reading
// (1 after all fps x sec frames).
std::vector<std::vector<uint8_t>> ReadBack(const std::vector<uint8_t>& movie,
                                           int32_t* end = nullptr);

}  // namespace velmora::test
