// Counts of one recording as the engine reports them frame by frame, and the
// one-line summary that the command-line recording prints.
#pragma once
#include <cstdint>
#include <string>

namespace velmora {

class RecordingStats {
 public:
  // One CP_Capture report.
  void Add(double frameCaptureMs, bool isDrop);

  int32_t Slots() const { return slots_; }
  int32_t Frames() const { return frames_; }
  int32_t Drops() const { return slots_ - frames_; }
  // Mean capture time of the frames that were not dropped; 0 without any.
  double AverageCaptureMs() const { return frames_ ? captureSumMs_ / frames_ : 0.0; }

 private:
  int32_t slots_ = 0;
  int32_t frames_ = 0;
  double captureSumMs_ = 0;
};

// Frames per second actually recorded, from the start time as Rec gives it
// back (the clock's low 32 bits) to the end of the last slot (a full clock
// reading), rounded; 0 when no slot ran or the recording lasted under a second.
int32_t AchievedFps(const RecordingStats& stats, int32_t firstCaptureTime, double lastSlotEndMs);

// "frames 300, drops 2, average capture 1.25 ms, result 0 OK": the result
// text is the engine's message for a failure.
std::string SummaryLine(const RecordingStats& stats, int32_t result, const std::string& resultText);

}  // namespace velmora
