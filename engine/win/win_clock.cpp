#include "engine/win/win_clock.h"

#include <windows.h>
#include <mmsystem.h>

namespace velmora::win {

WinClock::WinClock() {
  LARGE_INTEGER f;
  QueryPerformanceFrequency(&f);
  msPerTick_ = 1000.0 / static_cast<double>(f.QuadPart);
}

double WinClock::NowMs() {
  LARGE_INTEGER c;
  QueryPerformanceCounter(&c);
  return static_cast<double>(c.QuadPart) * msPerTick_;
}

void WinClock::SleepMs(int32_t ms) { ::Sleep(ms > 0 ? static_cast<DWORD>(ms) : 0); }

void WinClock::PumpMessages() {
  MSG msg;
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    if (msg.message == WM_QUIT) {
      // Leave the quit for the owner's own message loop.
      PostQuitMessage(static_cast<int>(msg.wParam));
      return;
    }
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
}

TimerResolutionScope::TimerResolutionScope() : raised_(timeBeginPeriod(1) == TIMERR_NOERROR) {}

TimerResolutionScope::~TimerResolutionScope() {
  if (raised_) timeEndPeriod(1);
}

}  // namespace velmora::win
