// The mapped movie writer: the file is pre-extended to the largest movie
// the recording can make (every frame raw plus its record head), a window of
// it is mapped, records are plain memory copies into the window, and the
// system writes the pages back in the background. At the end the file is
// cut to the bytes used.
//
// The window (8 frames, at least a few allocation granules) slides forward
// when the next record might not fit; its base is rounded to the system's
// allocation granularity. Positions are 64-bit, so movies over 4 GiB work.
// Where a compressed frame outgrows the pre-allocation the mapping is
// enlarged rather than written past. Any refused mapping or view ends the
// recording with -10 and the system error number; the file is then cut
// behind the last complete record. A volume without room for the mapping,
// checked before it is made, or a page it refuses during a copy, ends it
// with -10 and the disk-full error.
#pragma once
#include <cstdint>
#include <string>

#include "engine/capture_interfaces.h"
#include "engine/win/handles.h"
#include "engine/win/movie_writer_api.h"

namespace velmora::win {

class MappedMovieWriter final : public MovieSink {
 public:
  explicit MappedMovieWriter(const MovieWriterApi& api = SystemMovieWriterApi()) : api_(api) {}
  ~MappedMovieWriter() override { Close(); }
  // -2 the file cannot be opened; -6 with the megabytes needed when physical
  // memory cannot hold the window; -10 when the mapping or first view is refused.
  int32_t Open(const std::string& utf8Path, int64_t frameBytes, int32_t fps, int32_t sec) override;
  int32_t WriteHeader(const uint8_t (&header)[32]) override;
  int32_t BeginSlot() override;
  int32_t WriteFrame(const uint8_t* payload, uint32_t payloadBytes) override;
  int32_t WriteDropped(uint32_t unitsInFrame) override;
  void Close() override;

  // For tests: the size of the window onto the file.
  uint64_t WindowBytes() const { return windowBytes_; }

 private:
  int32_t CreateMapping(uint64_t bytes);
  int32_t MapViewAt(uint64_t base, uint64_t atLeast);
  int32_t Reserve(uint64_t bytes);
  // False when the volume refused a page of the view.
  bool Put(uint64_t offsetInRecord, const void* data, size_t bytes);

  const MovieWriterApi& api_;
  UniqueFile file_;
  std::string path_;
  UniqueHandleObj mapping_;
  UniqueView view_;
  uint64_t frameBytes_ = 0;
  uint64_t granularity_ = 65536;
  uint64_t mappedBytes_ = 0;
  uint64_t windowBytes_ = 0;
  uint64_t base_ = 0;       // file offset of the view
  uint64_t viewBytes_ = 0;  // length of the view
  uint64_t end_ = 0;        // file offset behind the last complete record
};

}  // namespace velmora::win
