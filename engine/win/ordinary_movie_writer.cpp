#include "engine/win/ordinary_movie_writer.h"

#include "engine/movie_records.h"
#include "engine/result_codes.h"

namespace velmora::win {

int32_t OrdinaryMovieWriter::Open(const std::string& utf8Path, int64_t, int32_t, int32_t) {
  file_ = OpenMovieFile(utf8Path, 0);
  complete_ = 0;
  return file_ ? 0 : MakeResultCode(kErrCannotOpen);
}

int32_t OrdinaryMovieWriter::WritePieces(
    std::initializer_list<std::pair<const void*, uint32_t>> pieces) {
  uint64_t done = 0;
  for (const auto& [data, bytes] : pieces) {
    DWORD written = 0;
    if (!api_.writeFile(file_.get(), data, bytes, &written) || written != bytes) {
      DWORD err = ::GetLastError();
      if (err == 0) err = ERROR_HANDLE_DISK_FULL;  // a short write reports no error
      CutFile(file_.get(), complete_);
      return MakeResultCode(kErrApi, static_cast<int32_t>(err));
    }
    done += bytes;
  }
  complete_ += done;
  return 0;
}

int32_t OrdinaryMovieWriter::WriteHeader(const uint8_t (&header)[32]) {
  return WritePieces({{header, 8}, {header + 8, 24}});
}

int32_t OrdinaryMovieWriter::WriteFrame(const uint8_t* payload, uint32_t payloadBytes) {
  const auto head = FrameRecordHead(payloadBytes);
  return WritePieces({{head.data(), 4}, {head.data() + 4, 4}, {payload, payloadBytes}});
}

int32_t OrdinaryMovieWriter::WriteDropped(uint32_t unitsInFrame) {
  const auto rec = DroppedRecord(unitsInFrame);
  return WritePieces({{rec.data(), 4}, {rec.data() + 4, 4}, {rec.data() + 8, 4}});
}

}  // namespace velmora::win
