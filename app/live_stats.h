// The capture frame window's live statistics: what one recording has counted
// so far and the six texts of its panel, redrawn on every tenth frame.
#pragma once
#include <cstdint>
#include <optional>
#include <string>

namespace velmora {

// The panel's texts for one refresh. `capture` is empty when every frame of
// the interval was dropped, `captureAve` when every frame of the run was.
struct PanelTexts {
  std::string frame, drop, dropRate, capture, captureAve, time;
  friend bool operator==(const PanelTexts&, const PanelTexts&) = default;
};

// Everything a refresh is drawn from.
struct StatsSnapshot {
  int32_t frameNumber = 0;  // one-based
  int64_t totalFrames = 0;
  int32_t dropCount = 0;
  int32_t seconds = 0;       // the length asked for
  double intervalSumMs = 0;  // capture times since the last refresh
  int32_t intervalFrames = 0;
  double runSumMs = 0;  // capture times of the whole run
  int32_t runFrames = 0;
  double elapsedMs = 0;  // since grabbing began
};

PanelTexts BuildPanelTexts(const StatsSnapshot& s);

// Counts the frames of one run as the engine reports them; a dropped frame
// cost no grab, so its time is kept out of both means.
class LiveStats {
 public:
  LiveStats(int32_t fps, int32_t seconds) : fps_(fps), seconds_(seconds) {}

  // One frame; on every tenth it gives the texts to draw and starts a new
  // interval, so "Capture" is the mean since the last refresh.
  std::optional<PanelTexts> Add(int32_t frameNumber, double captureMs, int32_t dropCount,
                                bool isDrop, double elapsedMs);

 private:
  int32_t fps_, seconds_;
  double intervalSumMs_ = 0, runSumMs_ = 0;
  int32_t intervalFrames_ = 0, runFrames_ = 0;
};

}  // namespace velmora
