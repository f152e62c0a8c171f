// The time source of every loop that paces itself (recording, playback,
// the recorder's start): the real one reads the performance counter, tests
// use a fake one so that pacing, drops and cancel timing are exact.
#pragma once
#include <cstdint>

namespace velmora {

// High-resolution milliseconds; on Windows performance counter / frequency x 1000.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual double NowMs() = 0;
  // 0 gives up the rest of the time slice only.
  virtual void SleepMs(int32_t ms) = 0;
  // Lets pending window messages run (the UI stays alive inside long loops).
  virtual void PumpMessages() = 0;
};

}  // namespace velmora
