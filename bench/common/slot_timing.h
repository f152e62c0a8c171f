// What a recording's slot report times say about its pacing: the frames kept
// per second and the frame start jitter, the same arithmetic for every
// benchmark that records.
#pragma once
#include <cstdint>
#include <vector>

namespace velmora::bench {

struct SlotTiming {
  double sustainedFps = 0;  // frames kept per second of the recording
  double jitterP99Ms = 0;   // 99th percentile of |slot end - ideal schedule|
};

// `reportMs`: when each slot was reported, in order, on any millisecond clock;
// `drops`: how many of them were dropped; `intervalMs`: 1000 / fps.
SlotTiming MeasureSlots(const std::vector<double>& reportMs, int32_t drops, double intervalMs);

}  // namespace velmora::bench
