#include "engine/recording_loop.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "engine/clock_low32.h"
#include "engine/frame_codec.h"
#include "engine/movie_format.h"
#include "engine/numbers.h"
#include "engine/result_codes.h"

namespace velmora {

size_t CompressOutputBytes(int64_t frameBytes) {
  const auto f = static_cast<size_t>(frameBytes);
  const auto established = static_cast<size_t>(RoundHalfEven(static_cast<double>(f) * 1.5 - 1)) + 1;
  return std::max(established, MaxPayloadBytes(f));
}

namespace {

bool SessionValid(const RecordingSession& s) {
  // The order matters only for which field is blamed; all give -1.
  return s.width >= 1 && s.height >= 1 && s.x >= 0 && s.y >= 0 && s.fps >= 1 && s.sec >= 0 &&
         s.method <= 2;
}

// One run of the loop over an opened sink; buffers are sized once.
class LoopRun {
 public:
  LoopRun(RecordingSession& s, const RecordingRequest& r, const RecordingPorts& p,
          int64_t frameBytes)
      : s_(s),
        req_(r),
        p_(p),
        frameBytes_(frameBytes),
        units_(static_cast<int32_t>(frameBytes / 4)) {}

  // Allocates the three buffers; false when memory is short.
  bool Allocate() {
    try {
      out_.assign(CompressOutputBytes(frameBytes_), 0);
      cur_.assign(static_cast<size_t>(frameBytes_), 0);
      prev_.assign(static_cast<size_t>(frameBytes_), 0);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }

  int32_t Record() {
    if (const int32_t rc = WriteHeader(); rc != 0) return rc;
    bool cancel = false;
    p_.listener.CP_StartCapture(cancel);
    if (cancel) return MakeResultCode(kErrCancelled, 0);
    WaitForStart();
    start_ = p_.clock.NowMs();
    if (req_.retFirstCaptureTime) {
      *req_.retFirstCaptureTime = Low32Ms(RoundHalfEven(start_));
    }
    last_ = start_;
    const int64_t slots = int64_t{s_.fps} * s_.sec;
    for (int64_t i = 0; i < slots; ++i) {
      if (const int32_t rc = Slot(i); rc != 0) return rc;
    }
    return 0;
  }

 private:
  int32_t WriteHeader() {
    MovieHeader h{s_.method, s_.bitCount, s_.width, s_.height, s_.fps, s_.sec};
    const auto bytes = EncodeMovieHeader(h);
    uint8_t raw[kMovieHeaderBytes];
    std::memcpy(raw, bytes.data(), sizeof raw);
    return p_.sink.WriteHeader(raw);
  }

  void WaitForStart() {
    if (req_.waitForStartTime == 0) return;
    // Any 32-bit value is a valid time once the clock has passed 2^31 ms.
    const double planned = FullMsNear(req_.waitForStartTime, p_.clock.NowMs());
    while (!(p_.clock.NowMs() > planned)) p_.clock.SleepMs(0);
  }

  void Pause() { p_.clock.SleepMs(s_.cpuReleaseTime); }

  // One frame slot i; returns 0 to go on, or the code that ends the recording.
  int32_t Slot(int64_t i) {
    const double t0 = p_.clock.NowMs();
    if (const int32_t rc = p_.sink.BeginSlot(); rc != 0) return rc;
    const double slotEnd = static_cast<double>(i + 1) * interval();
    bool isDrop = false;
    if (!req_.userCapture && slotEnd <= last_ - start_) {
      // The whole slot has passed already: the shortest path, 12 bytes.
      ++dropCount_;
      isDrop = true;
      if (const int32_t rc = p_.sink.WriteDropped(static_cast<uint32_t>(units_)); rc != 0)
        return rc;
    } else if (const int32_t rc = GrabCompressWrite(); rc != 0) {
      return rc;
    }
    if (s_.cpuReleaseCount >= 1) Pause();
    const double frameCaptureTime = p_.clock.NowMs() - t0;
    double now = p_.clock.NowMs();
    while (!(slotEnd < now - start_)) {
      p_.clock.PumpMessages();
      Pause();
      now = p_.clock.NowMs();
    }
    bool cancel = false;
    p_.listener.CP_Capture(static_cast<int32_t>(i), frameCaptureTime, dropCount_, isDrop,
                           compressSize_, units_, s_.x, s_.y, cancel);
    if (cancel) return MakeResultCode(kErrCancelled, static_cast<int32_t>(i + 1));
    last_ = now;
    return 0;
  }

  int32_t GrabCompressWrite() {
    uint8_t* frame = cur_.data();
    if (req_.userCapture) {
      p_.listener.CP_UserCaptureSetDATA(frame, static_cast<int32_t>(frameBytes_));
    } else {
      frame = p_.source->Grab(s_.x, s_.y, cur_.data());
    }
    if (s_.cpuReleaseCount >= 2) Pause();
    const int32_t n = p_.compress(out_.data(), frame, prev_.data(), units_);
    if (n < 0 || static_cast<size_t>(n) * 4 > out_.size()) return MakeResultCode(kErrBadFrameSize);
    compressSize_ = n;
    const int32_t rc = p_.sink.WriteFrame(out_.data(), static_cast<uint32_t>(n) * 4);
    // Keep this frame for the next comparison: swap unless its memory
    // belongs to the source (a DIB section's bits cannot move).
    if (frame == cur_.data()) {
      std::swap(cur_, prev_);
    } else {
      std::memcpy(prev_.data(), frame, prev_.size());
    }
    return rc;
  }

  double interval() const { return 1000.0 / s_.fps; }

  RecordingSession& s_;
  const RecordingRequest& req_;
  const RecordingPorts& p_;
  const int64_t frameBytes_;
  const int32_t units_;
  std::vector<uint8_t> out_, cur_, prev_;
  double start_ = 0, last_ = 0;
  int32_t dropCount_ = 0;
  int32_t compressSize_ = 0;
};

int32_t OpenAndRecord(RecordingSession& s, const RecordingRequest& r, const RecordingPorts& p) {
  const int64_t frameBytes = FrameBytes(s.width, s.height, s.bitCount);
  // A depth the display or the user-capture handler cannot describe, a
  // region too large for 32-bit frame arithmetic, or rows the grab would pad
  // (it would write or read past the unpadded frame) is not a usable session.
  // A negative method is left to the grabber factory, which has none for it.
  const bool rowsWhole = s.method < 0 || IsValidRegionWidth(s.width, s.bitCount, s.method);
  if (frameBytes < 4 || !rowsWhole || (!r.userCapture && p.source == nullptr)) {
    return MakeResultCode(kErrNotInitialised);
  }
  LoopRun run(s, r, p, frameBytes);
  if (!run.Allocate()) {
    const int64_t mb =
        static_cast<int64_t>(CompressOutputBytes(frameBytes) + 2 * frameBytes) / 1048576 + 1;
    return MakeResultCode(kErrBufferTooSmall, static_cast<int32_t>(mb));
  }
  int32_t rc = p.sink.Open(r.path, frameBytes, s.fps, s.sec);
  if (rc == 0 && p.source != nullptr) {
    GrabSetup setup{s.method, s.width, s.height, s.bitCount, frameBytes, s.drawMouse};
    const int32_t err = p.source->SetUp(setup);
    if (err < 0) rc = MakeResultCode(err);
    if (rc == 0) rc = run.Record();
    p.source->Release();
  } else if (rc == 0) {
    rc = run.Record();
  }
  p.sink.Close();
  return rc;
}

}  // namespace

int32_t RunRecordingLoop(RecordingSession& session, const RecordingRequest& request,
                         const RecordingPorts& ports) {
  int32_t rememberedBitCount = 0;  // only taken once validation passed
  int32_t rc = 0;
  if (!SessionValid(session)) {
    rc = MakeResultCode(kErrNotInitialised);
  } else if (request.userCapture && session.method != 1) {
    rc = MakeResultCode(kErrUserCaptureType1Only);
  } else {
    rememberedBitCount = session.bitCount;
    if (request.userCapture) ports.listener.CP_UserCaptureSetBitmapInfo(session.bitCount);
    rc = OpenAndRecord(session, request, ports);
  }
  // After -1 and -9 this leaves 0: the object is then unfit for another Rec,
  // which the recording run never attempts (it makes a fresh one each time).
  session.bitCount = rememberedBitCount;
  return rc;
}

}  // namespace velmora
