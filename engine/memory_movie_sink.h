// A MovieSink that keeps the movie in memory: the same bytes the file
// writers produce, for tests of the loop and for tools that build a movie
// before deciding where it goes.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "engine/capture_interfaces.h"

namespace velmora {

class MemoryMovieSink final : public MovieSink {
 public:
  int32_t Open(const std::string& utf8Path, int64_t frameBytes, int32_t fps, int32_t sec) override;
  int32_t WriteHeader(const uint8_t (&header)[32]) override;
  int32_t BeginSlot() override;
  int32_t WriteFrame(const uint8_t* payload, uint32_t payloadBytes) override;
  int32_t WriteDropped(uint32_t unitsInFrame) override;
  void Close() override;

  // Makes the `nth` record write (0-based, frames and drops together) fail
  // with `code` without appending anything, as a full disk would.
  void FailRecordWrite(int64_t nth, int32_t code) {
    failAt_ = nth;
    failCode_ = code;
  }
  // Makes Open fail with `code`.
  void FailOpen(int32_t code) { openCode_ = code; }

  const std::vector<uint8_t>& Bytes() const { return bytes_; }
  int64_t OpenCount() const { return openCount_; }
  int64_t CloseCount() const { return closeCount_; }

 private:
  int32_t RecordGate();
  void Append(const void* p, size_t n);

  std::vector<uint8_t> bytes_;
  bool open_ = false;
  int64_t openCount_ = 0, closeCount_ = 0, recordCalls_ = 0;
  int64_t failAt_ = -1;
  int32_t failCode_ = 0, openCode_ = 0;
};

}  // namespace velmora
