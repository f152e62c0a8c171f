#include "engine/memory_movie_sink.h"

#include "engine/movie_records.h"

namespace velmora {

int32_t MemoryMovieSink::Open(const std::string&, int64_t, int32_t, int32_t) {
  ++openCount_;
  if (openCode_ != 0) return openCode_;
  bytes_.clear();
  recordCalls_ = 0;
  open_ = true;
  return 0;
}

void MemoryMovieSink::Append(const void* p, size_t n) {
  const auto* b = static_cast<const uint8_t*>(p);
  bytes_.insert(bytes_.end(), b, b + n);
}

int32_t MemoryMovieSink::WriteHeader(const uint8_t (&header)[32]) {
  Append(header, 8);
  Append(header + 8, 24);
  return 0;
}

int32_t MemoryMovieSink::BeginSlot() { return 0; }

int32_t MemoryMovieSink::RecordGate() { return recordCalls_++ == failAt_ ? failCode_ : 0; }

int32_t MemoryMovieSink::WriteFrame(const uint8_t* payload, uint32_t payloadBytes) {
  if (const int32_t rc = RecordGate(); rc != 0) return rc;
  const auto head = FrameRecordHead(payloadBytes);
  Append(head.data(), head.size());
  Append(payload, payloadBytes);
  return 0;
}

int32_t MemoryMovieSink::WriteDropped(uint32_t unitsInFrame) {
  if (const int32_t rc = RecordGate(); rc != 0) return rc;
  const auto rec = DroppedRecord(unitsInFrame);
  Append(rec.data(), rec.size());
  return 0;
}

void MemoryMovieSink::Close() {
  if (open_) ++closeCount_;
  open_ = false;
}

}  // namespace velmora
