// The recorder program's arithmetic, apart from its device calls: the
// application's process id from the command line, whether a start request is served and from which
// instant, how the capture buffers are sized, and how many bytes of sound the wave file keeps
// (silence for a late start, the cut at an early stop).
#pragma once
#include <cstdint>
#include <string_view>

#include "sound/recorder_block.h"
#include "sound/wav_header.h"

namespace velmora::sound {

// The command line's only parameter: a decimal process id (blanks and quotes
// around it allowed), nothing else; 0 for anything that is not one.
uint32_t ParseApplicationProcessId(std::wstring_view commandLine);

enum class StartRefusal {
  kNone,
  kInvalid,      // CheckStartRequest refuses a field
  kRepeat,       // the request served last, written again (a run without sound does that)
  kTooLate,      // the whole recording would lie in the past
  kTooFarAhead,  // more than a minute ahead: no run plans that far
};

struct StartDecision {
  StartRefusal refusal = StartRefusal::kNone;
  double startAtMs = 0;  // the planned start as a full reading of the clock
};

// `lastServed`: the last request that was recorded, null before the first.
// A start that is late but within the recording's length is served: the
// missing head becomes silence (SoundTake), so sound stays with the pictures.
StartDecision DecideStart(const RecorderBlock& request, const RecorderBlock* lastServed,
                          double nowMs);

struct CaptureBuffers {
  uint32_t bytes = 0;  // one buffer: 50 ms of sound
  uint32_t count = 0;  // as many as the block's buffer size holds, 4 to 256
};
// `format` and `bufferKb` passed CheckStartRequest.
CaptureBuffers SizeCaptureBuffers(const PcmFormat& format, int32_t bufferKb);

// The sample value of silence: unsigned 8-bit samples are centred on 128.
constexpr uint8_t SilenceByte(const PcmFormat& format) {
  return format.bitsPerSample == 8 ? 0x80 : 0x00;
}

// The wave data of one recording, counted in bytes from the planned start.
class SoundTake {
 public:
  SoundTake(const PcmFormat& format, int32_t seconds, double startAtMs);

  // The device started at `nowMs`: the bytes of silence that stand for the
  // time since the planned start (whole sample frames; 0 when on time).
  // They count as kept.
  uint64_t LeadSilence(double nowMs);
  // Of `bytes` delivered by the device, how many to keep (and count).
  uint32_t Take(uint32_t bytes);
  // The stop request was seen at `nowMs`: keep sound up to then, no further.
  void StopAt(double nowMs);

  bool Full() const { return kept_ >= limit_; }
  // 15 s past the planned end and still short: the device delivers nothing.
  bool Stalled(double nowMs) const;
  uint64_t Kept() const { return kept_; }

 private:
  uint64_t FramesUpTo(double nowMs, bool roundUp) const;

  PcmFormat format_;
  double startAtMs_;
  double endMs_;
  uint64_t limit_;
  uint64_t kept_ = 0;
};

}  // namespace velmora::sound
