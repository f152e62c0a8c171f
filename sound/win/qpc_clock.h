// The shared high-resolution clock (performance counter / frequency x 1000)
// with the two things a waiting UI thread needs: sleeping and letting pending
// window messages run.
#pragma once
#include "engine/capture_interfaces.h"

namespace velmora::win {

class QpcClock final : public Clock {
 public:
  QpcClock();
  double NowMs() override;
  void SleepMs(int32_t ms) override;
  void PumpMessages() override;

 private:
  double msPerTick_;
};

}  // namespace velmora::win
