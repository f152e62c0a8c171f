#include "bench/common/slot_timing.h"

#include <algorithm>
#include <cmath>

namespace velmora::bench {

SlotTiming MeasureSlots(const std::vector<double>& reportMs, int32_t drops, double intervalMs) {
  SlotTiming t;
  if (reportMs.empty()) return t;
  const size_t slots = reportMs.size();
  // The last pacing wait ends just past the last slot; frames kept per second of that.
  const double elapsed = reportMs.back() - reportMs.front() + intervalMs;
  t.sustainedFps = (static_cast<double>(slots) - drops) * 1000.0 / elapsed;
  // Each slot's end against the ideal schedule, taken relative to the median
  // offset (the planned start is rounded to 1 ms and the clocks differ).
  std::vector<double> offsets;
  for (size_t i = 0; i < slots; ++i)
    offsets.push_back(reportMs[i] - static_cast<double>(i + 1) * intervalMs);
  std::vector<double> sorted = offsets;
  std::sort(sorted.begin(), sorted.end());
  const double median = sorted[sorted.size() / 2];
  for (double& o : offsets) o = std::fabs(o - median);
  std::sort(offsets.begin(), offsets.end());
  t.jitterP99Ms = offsets[static_cast<size_t>(0.99 * static_cast<double>(offsets.size() - 1))];
  return t;
}

}  // namespace velmora::bench
