#include "app/method_trial_text.h"

#include "engine/numbers.h"

namespace velmora {

int32_t TrialFrameMs(const RecordingStats& stats) {
  if (stats.Frames() == 0) return 0;
  const int64_t ms = RoundHalfEven(stats.AverageCaptureMs());
  return ms < 1 ? 1 : ClampToInt32(static_cast<double>(ms));
}

int32_t AchievableFps(int32_t frameMs) {
  if (frameMs < 1) return 0;
  // Whole tenths by integer division, so 1000/16 = 62.5 is an exact half
  // that rounds to even rather than a float a hair either side of it.
  const int32_t tenths = 10000 / frameMs;
  return static_cast<int32_t>(RoundHalfEven(tenths / 10.0));
}

std::string MethodTrialLine(int32_t method, int32_t result, int32_t frameMs, int32_t drops,
                            int32_t fps) {
  const std::string type = "Type " + std::to_string(method) + " ... ";
  if (result < 0 || frameMs < 1) return type + "計測失敗（エラーか全てDrop）\r\n";
  const int32_t achievable = AchievableFps(frameMs);
  // Compared in whole numbers: fps < achievable / 4 exactly, not truncated.
  const int64_t f = fps, a = achievable;
  const char* mark = 4 * f < a ? "◎" : 2 * f < a ? "○" : f >= a ? "×" : "△";
  return std::string(mark) + " " + type + "FrameTime:" + std::to_string(frameMs) + "msec. " +
         std::to_string(achievable) + " Fps. Drop:" + std::to_string(drops) + "\r\n";
}

std::string MethodTrialCaption(int32_t method, int32_t frameNumber) {
  return "Try Method " + std::to_string(method) + " ... " + std::to_string(frameNumber);
}

}  // namespace velmora
