#include "bench/capture/grab_rate.h"

#include <windows.h>

#include <functional>
#include <vector>

#include "engine/movie_format.h"
#include "engine/win/handles.h"
#include "engine/win/screen_grabber.h"
#include "engine/win/win_clock.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {

namespace {

// Calls `grab` once untimed (first touch of every object), then for about
// `ms` milliseconds; frames per second.
double RateOf(const std::function<void()>& grab, double ms) {
  WinClock clock;
  grab();
  const double start = clock.NowMs();
  int frames = 0;
  while (clock.NowMs() - start < ms) {
    grab();
    ++frames;
  }
  return frames * 1000.0 / (clock.NowMs() - start);
}

}  // namespace

double CaptureOnlyRate(int32_t method, int32_t width, int32_t height, double ms) {
  auto grabber = MakeScreenGrabber(method);
  GrabSetup setup;
  setup.method = method;
  setup.width = width;
  setup.height = height;
  setup.bitCount = DisplayBitCount();
  setup.frameBytes = FrameBytes(width, height, setup.bitCount);
  std::vector<uint8_t> buffer(static_cast<size_t>(setup.frameBytes));
  grabber->SetUp(setup);
  const double rate = RateOf([&] { grabber->Grab(0, 0, buffer.data()); }, ms);
  grabber->Release();
  return rate;
}

double OneBlockCopyRate(int32_t width, int32_t height, double ms) {
  UniqueMemoryDc display(CreateDCW(L"DISPLAY", nullptr, nullptr, nullptr));
  UniqueMemoryDc memory(CreateCompatibleDC(display.get()));
  BITMAPINFO bi{};
  bi.bmiHeader = DibHeader(width, height, 32);
  void* bits = nullptr;
  UniqueBitmap section(CreateDIBSection(display.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
  SelectGuard selection(memory.get(), section.get());
  return RateOf(
      [&] {
        BitBlt(memory.get(), 0, 0, width, height, display.get(), 0, 0, SRCCOPY);
        GdiFlush();
      },
      ms);
}

}  // namespace velmora::win
