// A clock for loop tests: time moves only when the code under test sleeps or
// the test moves it. Sleeps and pumps can be logged as 'S' and 'P' into a
// log shared with other fakes, so a test reads the exact order of events.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "engine/clock.h"

namespace velmora::test {

class FakeClock final : public Clock {
 public:
  FakeClock() : log_(ownLog_) {}
  explicit FakeClock(std::string& log) : log_(log) {}
  double NowMs() override { return now; }
  // A zero sleep still costs a little, so every wait ends.
  void SleepMs(int32_t ms) override {
    log_ += 'S';
    sleeps.push_back(ms);
    now += ms > 0 ? ms : zeroSleepMs;
  }
  void PumpMessages() override {
    log_ += 'P';
    ++pumps;
  }

  double now = 1000.0;
  double zeroSleepMs = 1.0;
  std::vector<int32_t> sleeps;
  int pumps = 0;

 private:
  std::string ownLog_;
  std::string& log_;
};

}  // namespace velmora::test
