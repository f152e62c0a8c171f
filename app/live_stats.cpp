#include "app/live_stats.h"

#include <cmath>
#include <cstdint>

namespace velmora {
namespace {

constexpr int32_t kRefreshEvery = 10;

// Tenths, truncated, printed in their shortest form: 12 as "12", 12.5 as "12.5".
std::string Tenths(int64_t tenths) {
  std::string text = std::to_string(tenths / 10);
  if (tenths % 10 != 0) {
    text += '.';
    text += static_cast<char>('0' + tenths % 10);
  }
  return text;
}

// ⌊mean × 10⌋; a capture time is never negative, and a corrupt one must not
// overflow the conversion.
int64_t MeanTenths(double sumMs, int32_t frames) {
  const double t = std::floor(sumMs / frames * 10);
  return t >= 0 && t < 1e15 ? static_cast<int64_t>(t) : 0;
}

}  // namespace

PanelTexts BuildPanelTexts(const StatsSnapshot& s) {
  PanelTexts t;
  const std::string n = std::to_string(s.frameNumber);
  t.frame = "Frame " + n + "/" + std::to_string(s.totalFrames);
  t.drop = "Drop " + std::to_string(s.dropCount) + "/" + n;
  // Integer arithmetic: 3 of 70 is 4.2 exactly as a truncation of 4.2857.
  const int64_t dropTenths = s.frameNumber > 0 ? int64_t{s.dropCount} * 1000 / s.frameNumber : 0;
  t.dropRate = "DropPer " + Tenths(dropTenths) + "%";
  if (s.intervalFrames >= 1)
    t.capture = "Capture " + Tenths(MeanTenths(s.intervalSumMs, s.intervalFrames)) + "ms";
  if (s.runFrames >= 1)
    t.captureAve = "CaptureAve " + Tenths(MeanTenths(s.runSumMs, s.runFrames)) + "ms";
  const int64_t wholeSeconds =
      s.elapsedMs > 0 && s.elapsedMs < 1e15 ? static_cast<int64_t>(s.elapsedMs / 1000) : 0;
  t.time = "Time " + std::to_string(wholeSeconds) + " / " + std::to_string(s.seconds) + "sec";
  return t;
}

std::optional<PanelTexts> LiveStats::Add(int32_t frameNumber, double captureMs, int32_t dropCount,
                                         bool isDrop, double elapsedMs) {
  if (!isDrop) {
    ++intervalFrames_;
    ++runFrames_;
    intervalSumMs_ += captureMs;
    runSumMs_ += captureMs;
  }
  if (frameNumber % kRefreshEvery != 0) return std::nullopt;
  StatsSnapshot s;
  s.frameNumber = frameNumber;
  s.totalFrames = int64_t{fps_} * seconds_;
  s.dropCount = dropCount;
  s.seconds = seconds_;
  s.intervalSumMs = intervalSumMs_;
  s.intervalFrames = intervalFrames_;
  s.runSumMs = runSumMs_;
  s.runFrames = runFrames_;
  s.elapsedMs = elapsedMs;
  intervalSumMs_ = 0;
  intervalFrames_ = 0;
  return BuildPanelTexts(s);
}

}  // namespace velmora
