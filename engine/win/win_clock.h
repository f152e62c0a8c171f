// The engine's clock on Windows: the performance counter in milliseconds,
// Sleep, and a message pump that keeps the user interface alive.
#pragma once
#include <cstdint>

#include "engine/clock.h"

namespace velmora::win {

class WinClock final : public Clock {
 public:
  WinClock();
  double NowMs() override;
  void SleepMs(int32_t ms) override;
  void PumpMessages() override;

 private:
  double msPerTick_ = 0;
};

// Raises the system timer resolution to 1 ms while it lives, so that the
// pacing sleeps of a recording are 1 ms and not a whole scheduler tick.
class TimerResolutionScope {
 public:
  TimerResolutionScope();
  ~TimerResolutionScope();
  TimerResolutionScope(const TimerResolutionScope&) = delete;
  TimerResolutionScope& operator=(const TimerResolutionScope&) = delete;

 private:
  bool raised_ = false;
};

}  // namespace velmora::win
