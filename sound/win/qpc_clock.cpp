#include "sound/win/qpc_clock.h"

#include <windows.h>

namespace velmora::win {

QpcClock::QpcClock() {
  LARGE_INTEGER f;
  QueryPerformanceFrequency(&f);
  msPerTick_ = 1000.0 / static_cast<double>(f.QuadPart);
}

double QpcClock::NowMs() {
  LARGE_INTEGER t;
  QueryPerformanceCounter(&t);
  return static_cast<double>(t.QuadPart) * msPerTick_;
}

void QpcClock::SleepMs(int32_t ms) { Sleep(ms < 0 ? 0 : static_cast<DWORD>(ms)); }

void QpcClock::PumpMessages() {
  MSG msg;
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
}

}  // namespace velmora::win
