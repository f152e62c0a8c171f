#include "bench/capture/grab_rate.h"

#include <vector>

#include "engine/movie_format.h"
#include "engine/win/screen_grabber.h"
#include "engine/win/win_clock.h"

namespace velmora::win {

double CaptureOnlyRate(int32_t method, int32_t width, int32_t height, double ms) {
  WinClock clock;
  auto grabber = MakeScreenGrabber(method);
  GrabSetup setup;
  setup.method = method;
  setup.width = width;
  setup.height = height;
  setup.bitCount = DisplayBitCount();
  setup.frameBytes = FrameBytes(width, height, setup.bitCount);
  std::vector<uint8_t> buffer(static_cast<size_t>(setup.frameBytes));
  grabber->SetUp(setup);
  grabber->Grab(0, 0, buffer.data());  // first touch of every object
  const double start = clock.NowMs();
  int frames = 0;
  while (clock.NowMs() - start < ms) {
    grabber->Grab(0, 0, buffer.data());
    ++frames;
  }
  const double elapsed = clock.NowMs() - start;
  grabber->Release();
  return frames * 1000.0 / elapsed;
}

}  // namespace velmora::win
