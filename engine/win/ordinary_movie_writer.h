// The ordinary movie writer: every piece of the header and of each record
// goes to the file with one blocking write. The file is opened, never
// replaced, so an older and longer file keeps its tail behind the movie
// (readers stop after fps x sec records). A failed write ends the recording
// with -10 and the system error number; the file is then cut behind the
// last complete record, so what was written stays readable.
#pragma once
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include "engine/capture_interfaces.h"
#include "engine/win/handles.h"
#include "engine/win/movie_writer_api.h"

namespace velmora::win {

class OrdinaryMovieWriter final : public MovieSink {
 public:
  explicit OrdinaryMovieWriter(const MovieWriterApi& api = SystemMovieWriterApi()) : api_(api) {}
  int32_t Open(const std::string& utf8Path, int64_t frameBytes, int32_t fps, int32_t sec) override;
  int32_t WriteHeader(const uint8_t (&header)[32]) override;
  int32_t BeginSlot() override { return 0; }
  int32_t WriteFrame(const uint8_t* payload, uint32_t payloadBytes) override;
  int32_t WriteDropped(uint32_t unitsInFrame) override;
  void Close() override { file_.reset(); }

 private:
  // Writes the pieces in order; on the first failure cuts the file back to
  // the end of the last complete record and returns the -10 code.
  int32_t WritePieces(std::initializer_list<std::pair<const void*, uint32_t>> pieces);

  const MovieWriterApi& api_;
  UniqueFile file_;
  uint64_t complete_ = 0;  // bytes of whole records (and header) written
};

}  // namespace velmora::win
