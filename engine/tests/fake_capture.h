// Fakes for the recording loop: a clock whose time moves only when the loop
// sleeps or a fake grab "takes" time, a source of known frames, a listener
// that records every notification, and one event log they all write to, so
// a test can read the exact order of grabs, pauses, pumps and writes.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "engine/capture_interfaces.h"
#include "engine/memory_movie_sink.h"

namespace velmora::test {

using EventLog = std::string;  // one letter per event, see each fake

// 'S' a sleep, 'P' a message pump. SleepMs(0) still moves time a little
// (giving up the time slice is never free), so every wait terminates.
class FakeClock final : public Clock {
 public:
  explicit FakeClock(EventLog& log, double startMs = 1000.0) : log_(log), now_(startMs) {}
  double NowMs() override { return now_; }
  void SleepMs(int32_t ms) override {
    log_ += 'S';
    sleeps.push_back(ms);
    now_ += ms > 0 ? ms : zeroSleepMs;
  }
  void PumpMessages() override {
    log_ += 'P';
    ++pumps;
  }
  void Advance(double ms) { now_ += ms; }

  double zeroSleepMs = 1.0;
  std::vector<int32_t> sleeps;
  int64_t pumps = 0;

 private:
  EventLog& log_;
  double now_;
};

// 'G' a grab. Frame k (k = number of grabs so far) is filled with a pattern
// that differs from frame to frame, so the decoded movie tells which grab
// each record holds. A grab takes `grabMs` on the fake clock.
class FakeSource final : public FrameSource {
 public:
  FakeSource(EventLog& log, FakeClock& clock) : log_(log), clock_(clock) {}
  int32_t SetUp(const GrabSetup& s) override {
    setup = s;
    ++setUps;
    own.assign(static_cast<size_t>(s.frameBytes), 0);
    return setUpError;
  }
  uint8_t* Grab(int32_t x, int32_t y, uint8_t* buffer) override {
    log_ += 'G';
    origins.emplace_back(x, y);
    uint8_t* dst = ownsMemory ? own.data() : buffer;
    const auto frame = FrameFor(static_cast<int32_t>(origins.size() - 1));
    std::copy(frame.begin(), frame.end(), dst);
    clock_.Advance(grabMs);
    return dst;
  }
  bool OwnsFrameMemory() const override { return ownsMemory; }
  void Release() override { ++releases; }

  // The bytes grab number k delivers.
  std::vector<uint8_t> FrameFor(int32_t k) const {
    std::vector<uint8_t> f(static_cast<size_t>(setup.frameBytes));
    for (size_t j = 0; j < f.size(); ++j) {
      // The second half stays black: a payload of a wholly changed frame
      // is longer than the reader's payload buffer (F + 1 bytes).
      const bool changed = worstCase ? (j / 4) % 2 == 0 : j < f.size() / 2;
      f[j] = changed ? static_cast<uint8_t>((j / 4 + static_cast<size_t>(k) * 7) % 251 + 1) : 0;
    }
    return f;
  }

  double grabMs = 0;
  bool ownsMemory = false;
  bool worstCase = false;  // every other unit changed: the encoder's longest payload
  int32_t setUpError = 0;
  GrabSetup setup{};
  std::vector<std::pair<int32_t, int32_t>> origins;
  int64_t setUps = 0, releases = 0;

 private:
  EventLog& log_;
  FakeClock& clock_;
  std::vector<uint8_t> own;
};

// 'B' slot begun, 'W' frame written, 'D' dropped record; forwards to memory.
class LoggingSink final : public MovieSink {
 public:
  explicit LoggingSink(EventLog& log) : log_(log) {}
  int32_t Open(const std::string& p, int64_t f, int32_t fps, int32_t sec) override {
    return mem.Open(p, f, fps, sec);
  }
  int32_t WriteHeader(const uint8_t (&h)[32]) override { return mem.WriteHeader(h); }
  int32_t BeginSlot() override {
    log_ += 'B';
    return mem.BeginSlot();
  }
  int32_t WriteFrame(const uint8_t* p, uint32_t n) override {
    log_ += 'W';
    return mem.WriteFrame(p, n);
  }
  int32_t WriteDropped(uint32_t units) override {
    log_ += 'D';
    return mem.WriteDropped(units);
  }
  void Close() override { mem.Close(); }
  MemoryMovieSink mem;

 private:
  EventLog& log_;
};

struct CaptureReport {
  int32_t nowFrame;
  double frameCaptureTime;
  int32_t dropCount;
  bool isDrop;
  int32_t compressSize;
  int32_t noCompressSize;
};

// 'C' a CP_Capture, 'A' CP_StartCapture, 'U' CP_UserCaptureSetDATA.
class RecordingListener final : public CaptureListener {
 public:
  explicit RecordingListener(EventLog& log) : log_(log) {}
  void CP_UserCaptureSetBitmapInfo(int32_t& bitCount) override {
    ++bitmapInfoCalls;
    bitCountSeen = bitCount;
    if (userBitCount) bitCount = userBitCount;
  }
  void CP_StartCapture(bool& cancel) override {
    log_ += 'A';
    ++startCalls;
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
    if (moveBy) {
      x += moveBy;
      y += moveBy * 2;
    }
    cancel = nowFrame == cancelAtFrame;
  }

  bool cancelAtStart = false;
  int32_t cancelAtFrame = -1;
  int32_t moveBy = 0;
  int32_t userBitCount = 0;
  std::function<void(uint8_t*, int32_t)> onUserData;
  int64_t bitmapInfoCalls = 0, startCalls = 0;
  int32_t bitCountSeen = 0, userFrameBytes = 0;
  std::vector<CaptureReport> reports;

 private:
  EventLog& log_;
};

}  // namespace velmora::test
