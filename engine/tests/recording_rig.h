// One recording through the real loop with fakes, into the logging memory
// sink or any other sink (the file writers), plus readers of the resulting
// movie bytes. Time moves only when the loop sleeps or a fake grab takes
// time; every fake appends one letter to a shared event log, so a test reads
// the exact order of grabs, pauses, pumps and writes: A start event, B slot
// begun, G grab, U user frame, S sleep, P pump, W frame written, D dropped
// record, C capture event.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "engine/capture_interfaces.h"
#include "engine/memory_movie_sink.h"
#include "engine/recording_loop.h"
#include "tests/fake_clock.h"

namespace velmora::test {

// Grab k delivers FrameFor(k): every unit of its first half differs from grab
// to grab, some turning black, and the second half stays the same but is not
// black, so a frame coded against anything but the previous grab (a black
// frame, itself) decodes wrong. `worstCase` changes every other unit instead,
// against black ones (the first frame too).
class FakeSource final : public FrameSource {
 public:
  FakeSource(std::string& log, FakeClock& clock) : log_(log), clock_(clock) {}
  int32_t SetUp(const GrabSetup& s) override {
    setup = s;
    own_.assign(static_cast<size_t>(s.frameBytes), 0);
    return setUpError;
  }
  uint8_t* Grab(int32_t x, int32_t y, uint8_t* buffer) override {
    log_ += 'G';
    origins.emplace_back(x, y);
    uint8_t* dst = ownsMemory ? own_.data() : buffer;
    const auto f = FrameFor(static_cast<int32_t>(origins.size() - 1));
    std::copy(f.begin(), f.end(), dst);
    clock_.now += grabMs;
    return dst;
  }
  bool OwnsFrameMemory() const override { return ownsMemory; }
  void Release() override { ++releases; }

  std::vector<uint8_t> FrameFor(int32_t k) const {
    std::vector<uint8_t> f(static_cast<size_t>(setup.frameBytes));
    const auto grab = static_cast<size_t>(k);
    for (size_t j = 0; j < f.size(); ++j) {
      const size_t unit = j / 4;
      if (worstCase) {
        f[j] = unit % 2 == 0 ? static_cast<uint8_t>((unit + grab * 7) % 251 + 1) : 0;
      } else {
        f[j] = static_cast<uint8_t>(j < f.size() / 2 ? (unit + grab) % 4 * 85 : j % 5 + 1);
      }
    }
    return f;
  }

  double grabMs = 0;
  bool ownsMemory = false;
  bool worstCase = false;
  int32_t setUpError = 0;
  GrabSetup setup{};
  std::vector<std::pair<int32_t, int32_t>> origins;
  int64_t releases = 0;

 private:
  std::string& log_;
  FakeClock& clock_;
  std::vector<uint8_t> own_;
};

// Logs and forwards to an in-memory movie.
class LoggingSink final : public MovieSink {
 public:
  explicit LoggingSink(std::string& log) : log_(log) {}
  int32_t Open(const std::string& p, int64_t f, int32_t fps, int32_t sec) override {
    return mem.Open(p, f, fps, sec);
  }
  int32_t WriteHeader(const uint8_t (&h)[32]) override { return mem.WriteHeader(h); }
  int32_t BeginSlot() override { return log_ += 'B', mem.BeginSlot(); }
  int32_t WriteFrame(const uint8_t* p, uint32_t n) override {
    return log_ += 'W', mem.WriteFrame(p, n);
  }
  int32_t WriteDropped(uint32_t u) override { return log_ += 'D', mem.WriteDropped(u); }
  void Close() override { mem.Close(); }
  MemoryMovieSink mem;

 private:
  std::string& log_;
};

struct CaptureReport {
  int32_t nowFrame;
  double frameCaptureTime;
  int32_t dropCount;
  bool isDrop;
  int32_t compressSize;
  int32_t noCompressSize;
};

class RecordingListener final : public CaptureListener {
 public:
  explicit RecordingListener(std::string& log) : log_(log) {}
  void CP_UserCaptureSetBitmapInfo(int32_t& bitCount) override {
    ++bitmapInfoCalls;
    bitCountSeen = bitCount;
    if (userBitCount) bitCount = userBitCount;
  }
  void CP_StartCapture(bool& cancel) override {
    log_ += 'A';
    cancel = cancelAtStart;
  }
  void CP_UserCaptureSetDATA(uint8_t* frame, int32_t bytes) override {
    log_ += 'U';
    userFrameBytes = bytes;
    if (onUserData) onUserData(frame, bytes);
  }
  void CP_Capture(int32_t nowFrame, double t, int32_t drops, bool isDrop, int32_t cs, int32_t ncs,
                  int32_t& x, int32_t& y, bool& cancel) override {
    log_ += 'C';
    reports.push_back({nowFrame, t, drops, isDrop, cs, ncs});
    x += moveBy;
    y += moveBy * 2;
    cancel = nowFrame == cancelAtFrame;
  }

  bool cancelAtStart = false;
  int32_t cancelAtFrame = -1;
  int32_t moveBy = 0;
  int32_t userBitCount = 0;
  std::function<void(uint8_t*, int32_t)> onUserData;
  int64_t bitmapInfoCalls = 0;
  int32_t bitCountSeen = 0, userFrameBytes = 0;
  std::vector<CaptureReport> reports;

 private:
  std::string& log_;
};

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
// What MovieReader makes of a movie: Open's code, the code Next stopped
// with (1 at the end) and the frames it decoded until then.
struct ReadResult {
  int32_t open = 0, last = 0;
  std::vector<std::vector<uint8_t>> frames;
};
ReadResult ReadBack(const std::vector<uint8_t>& movie);

}  // namespace velmora::test
