#include "engine/win/mapped_movie_writer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "engine/movie_records.h"
#include "engine/numbers.h"
#include "engine/result_codes.h"
#include "engine/win/guarded_copy.h"

namespace velmora::win {
namespace {

constexpr uint64_t kMiB = 1048576;
// A window of fewer granules could not slide by whole granules and still
// keep the record being written inside it.
constexpr uint64_t kMinWindowGranules = 4;

uint64_t RoundDown(uint64_t v, uint64_t unit) { return v / unit * unit; }

int32_t ApiError() { return MakeResultCode(kErrApi, static_cast<int32_t>(::GetLastError())); }
int32_t DiskFull() { return MakeResultCode(kErrApi, ERROR_DISK_FULL); }

}  // namespace

int32_t MappedMovieWriter::Open(const std::string& utf8Path, int64_t frameBytes, int32_t fps,
                                int32_t sec) {
  Close();
  file_ = OpenMovieFile(utf8Path, FILE_FLAG_OVERLAPPED);
  if (!file_) return MakeResultCode(kErrCannotOpen);
  path_ = utf8Path;
  frameBytes_ = static_cast<uint64_t>(frameBytes);
  granularity_ = std::max<uint64_t>(api_.allocationGranularity(), 1);
  const uint64_t maxNeed = (frameBytes_ + kFrameRecordHeadBytes) * static_cast<uint64_t>(fps) *
                               static_cast<uint64_t>(sec) +
                           100;
  const uint64_t eightFrames = 8 * frameBytes_;
  if (api_.totalPhysicalMemory() < eightFrames + kMiB) {
    const auto mb = RoundHalfEven(static_cast<double>(eightFrames) / kMiB + 1);
    return MakeResultCode(kErrBufferTooSmall, static_cast<int32_t>(mb));
  }
  windowBytes_ = std::min(std::max(eightFrames, kMinWindowGranules * granularity_), maxNeed);
  if (const int32_t rc = CreateMapping(maxNeed); rc != 0) return rc;
  return MapViewAt(0, 0);
}

int32_t MappedMovieWriter::CreateMapping(uint64_t bytes) {
  view_.reset();
  viewBytes_ = 0;
  mapping_.reset();
  // A full volume must be found here, as a result code: once mapped, a page
  // the file system cannot back only shows up as a fault during a copy.
  LARGE_INTEGER size{};
  const uint64_t had =
      ::GetFileSizeEx(file_.get(), &size) ? static_cast<uint64_t>(size.QuadPart) : 0;
  if (bytes > had) {
    if (api_.freeDiskBytes(path_) < bytes - had) return DiskFull();
    // Where the file system can allocate up front, do so (never below the
    // file's size: that would cut it). Elsewhere the copy guard catches it.
    const DWORD claimed = api_.claimSpace(file_.get(), bytes);
    if (claimed == ERROR_DISK_FULL || claimed == ERROR_HANDLE_DISK_FULL) return DiskFull();
  }
  mapping_.reset(api_.createMapping(file_.get(), bytes));
  if (!mapping_) return ApiError();
  mappedBytes_ = bytes;
  return 0;
}

int32_t MappedMovieWriter::MapViewAt(uint64_t base, uint64_t atLeast) {
  view_.reset();
  viewBytes_ = 0;
  const uint64_t bytes = std::min(std::max(windowBytes_, atLeast), mappedBytes_ - base);
  void* p = api_.mapView(mapping_.get(), base, static_cast<size_t>(bytes));
  if (!p) return ApiError();
  view_.reset(p);
  base_ = base;
  viewBytes_ = bytes;
  // The write position must lie in the new view. Unreachable: bases never
  // pass the write position and every caller asks for a view reaching it;
  // if it ever failed, writing on would scribble over memory, so stop at once.
  if (end_ < base_ || end_ > base_ + viewBytes_) std::abort();
  return 0;
}

int32_t MappedMovieWriter::BeginSlot() {
  const uint64_t writePos = end_ - base_;
  if (writePos + 2 * frameBytes_ <= viewBytes_) return 0;
  if (base_ + viewBytes_ >= mappedBytes_) return 0;  // the view already reaches the end
  // Slide so that the last four frames' worth of the old window stay mapped,
  // the base rounded up to the granularity - but never past the write position.
  const uint64_t keep = 4 * frameBytes_;
  const uint64_t tentative = base_ + viewBytes_ > keep ? base_ + viewBytes_ - keep : 0;
  uint64_t base = RoundDown(tentative + granularity_ - 1, granularity_);
  if (base > end_) base = RoundDown(end_, granularity_);
  if (base == base_) return 0;
  return MapViewAt(base, end_ - base);
}

int32_t MappedMovieWriter::Reserve(uint64_t bytes) {
  if (end_ + bytes > mappedBytes_) {
    // Only frames that compress worse than raw get here; grow by half again.
    const uint64_t grown = std::max(end_ + bytes + windowBytes_, mappedBytes_ + mappedBytes_ / 2);
    if (const int32_t rc = CreateMapping(grown); rc != 0) return rc;
  }
  if (view_ && end_ + bytes <= base_ + viewBytes_) return 0;
  const uint64_t base = RoundDown(end_, granularity_);
  return MapViewAt(base, end_ - base + bytes);
}

bool MappedMovieWriter::Put(uint64_t offsetInRecord, const void* data, size_t bytes) {
  return CopyUnlessPageFault(static_cast<uint8_t*>(view_.get()) + (end_ - base_) + offsetInRecord,
                             data, bytes);
}

// A record the volume could not take is not counted: the cut at Close keeps
// only whole records.
int32_t MappedMovieWriter::WriteHeader(const uint8_t (&header)[32]) {
  if (const int32_t rc = Reserve(32); rc != 0) return rc;
  if (!Put(0, header, 8) || !Put(8, header + 8, 24)) return DiskFull();
  end_ += 32;
  return 0;
}

int32_t MappedMovieWriter::WriteFrame(const uint8_t* payload, uint32_t payloadBytes) {
  if (const int32_t rc = Reserve(kFrameRecordHeadBytes + uint64_t{payloadBytes}); rc != 0)
    return rc;
  const auto head = FrameRecordHead(payloadBytes);
  if (!Put(0, head.data(), 4) || !Put(4, head.data() + 4, 4) || !Put(8, payload, payloadBytes)) {
    return DiskFull();
  }
  end_ += kFrameRecordHeadBytes + payloadBytes;
  return 0;
}

int32_t MappedMovieWriter::WriteDropped(uint32_t unitsInFrame) {
  if (const int32_t rc = Reserve(kDroppedRecordBytes); rc != 0) return rc;
  const auto rec = DroppedRecord(unitsInFrame);
  if (!Put(0, rec.data(), rec.size())) return DiskFull();
  end_ += kDroppedRecordBytes;
  return 0;
}

void MappedMovieWriter::Close() {
  view_.reset();
  mapping_.reset();
  if (file_) CutFile(file_.get(), end_);
  file_.reset();
  base_ = viewBytes_ = end_ = mappedBytes_ = 0;
}

}  // namespace velmora::win
