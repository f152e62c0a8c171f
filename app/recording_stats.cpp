#include "app/recording_stats.h"

#include <cmath>
#include <cstdio>

#include "engine/clock_low32.h"

namespace velmora {

void RecordingStats::Add(double frameCaptureMs, bool isDrop) {
  ++slots_;
  if (isDrop) return;  // a dropped slot cost nothing and is kept out of the mean
  ++frames_;
  captureSumMs_ += frameCaptureMs;
}

int32_t AchievedFps(const RecordingStats& stats, int32_t firstCaptureTime, double lastSlotEndMs) {
  if (stats.Slots() == 0) return 0;
  const double seconds = (lastSlotEndMs - FullMsNear(firstCaptureTime, lastSlotEndMs)) / 1000.0;
  if (seconds < 1.0) return 0;
  return static_cast<int32_t>(std::nearbyint(stats.Frames() / seconds));
}

std::string SummaryLine(const RecordingStats& stats, int32_t result,
                        const std::string& resultText) {
  char head[160];
  std::snprintf(head, sizeof head, "frames %d, drops %d, average capture %.2f ms, result %d ",
                stats.Slots(), stats.Drops(), stats.AverageCaptureMs(), static_cast<int>(result));
  std::string text = resultText;
  // The system's messages end in a line break; the summary is one line.
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  return head + (result == 0 ? std::string("OK") : text);
}

}  // namespace velmora
