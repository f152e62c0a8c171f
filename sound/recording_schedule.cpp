#include "sound/recording_schedule.h"

#include <algorithm>
#include <cmath>

#include "engine/clock_low32.h"

namespace velmora::sound {

uint32_t ParseApplicationProcessId(std::wstring_view text) {
  auto skipBlanks = [&] {
    while (!text.empty() && (text[0] == L' ' || text[0] == L'\t' || text[0] == L'"'))
      text.remove_prefix(1);
  };
  skipBlanks();
  uint64_t v = 0;
  int digits = 0;
  for (; !text.empty() && text[0] >= L'0' && text[0] <= L'9'; text.remove_prefix(1)) {
    if (++digits > 10) return 0;
    v = v * 10 + static_cast<uint64_t>(text[0] - L'0');
  }
  skipBlanks();
  if (!text.empty() || v > 0xFFFFFFFFu) return 0;
  return static_cast<uint32_t>(v);
}

namespace {

constexpr double kFurthestAheadMs = 60000;
constexpr uint32_t kBufferMs = 50;
constexpr double kStallMs = 15000;

bool SameRequest(const RecorderBlock& a, const RecorderBlock& b) {
  return a.plannedStartMs == b.plannedStartMs && a.waveName == b.waveName &&
         a.tempName == b.tempName;
}

}  // namespace

StartDecision DecideStart(const RecorderBlock& request, const RecorderBlock* lastServed,
                          double nowMs) {
  StartDecision d;
  d.startAtMs = FullMsNear(request.plannedStartMs, nowMs);
  const double ahead = d.startAtMs - nowMs;
  if (CheckStartRequest(request) != RequestProblem::kNone) {
    d.refusal = StartRefusal::kInvalid;
  } else if (lastServed && SameRequest(request, *lastServed)) {
    d.refusal = StartRefusal::kRepeat;
  } else if (-ahead >= request.seconds * 1000.0) {
    d.refusal = StartRefusal::kTooLate;
  } else if (ahead > kFurthestAheadMs) {
    d.refusal = StartRefusal::kTooFarAhead;
  }
  return d;
}

CaptureBuffers SizeCaptureBuffers(const PcmFormat& format, int32_t bufferKb) {
  CaptureBuffers b;
  b.bytes = static_cast<uint32_t>(format.samplesPerSec) * kBufferMs / 1000 *
            static_cast<uint32_t>(format.BlockAlign());
  b.count = std::clamp<uint32_t>(static_cast<uint32_t>(bufferKb) * 1024 / b.bytes, 4, 256);
  return b;
}

SoundTake::SoundTake(const PcmFormat& format, int32_t seconds, double startAtMs)
    : format_(format),
      startAtMs_(startAtMs),
      endMs_(startAtMs + seconds * 1000.0),
      limit_(uint64_t{static_cast<uint32_t>(seconds)} *
             static_cast<uint32_t>(format.samplesPerSec) *
             static_cast<uint32_t>(format.BlockAlign())) {}

uint64_t SoundTake::FramesUpTo(double nowMs, bool roundUp) const {
  const double frames = std::max(0.0, nowMs - startAtMs_) / 1000.0 * format_.samplesPerSec;
  return static_cast<uint64_t>(roundUp ? std::ceil(frames) : std::floor(frames));
}

uint64_t SoundTake::LeadSilence(double nowMs) {
  const uint64_t silence = std::min(
      limit_ - kept_, FramesUpTo(nowMs, false) * static_cast<uint32_t>(format_.BlockAlign()));
  kept_ += silence;
  return silence;
}

uint32_t SoundTake::Take(uint32_t bytes) {
  const auto take = static_cast<uint32_t>(std::min<uint64_t>(bytes, limit_ - kept_));
  kept_ += take;
  return take;
}

void SoundTake::StopAt(double nowMs) {
  limit_ = std::max(kept_, std::min(limit_, FramesUpTo(nowMs, true) *
                                                static_cast<uint32_t>(format_.BlockAlign())));
}

bool SoundTake::Stalled(double nowMs) const { return !Full() && nowMs > endMs_ + kStallMs; }

}  // namespace velmora::sound
