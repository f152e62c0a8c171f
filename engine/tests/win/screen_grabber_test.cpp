// Real GDI grabs of a window that the test paints, under Wine on Xvfb.
#include "engine/win/screen_grabber.h"

#include <gtest/gtest.h>

#include "engine/movie_format.h"
#include "tests/win/pattern_window.h"

namespace velmora {
namespace {

using test::ExpectedFrame;
using test::FirstDifferentPixel;
using test::PatternWindow;

constexpr int32_t kLeft = 900, kTop = 150, kW = 64, kH = 48;

struct Grab {
  std::unique_ptr<FrameSource> source;
  std::vector<uint8_t> buffer;
  GrabSetup setup;
  Grab(int32_t method, bool drawMouse, int32_t w = kW, int32_t h = kH)
      : source(win::MakeScreenGrabber(method)) {
    setup.method = method;
    setup.width = w;
    setup.height = h;
    setup.bitCount = win::DisplayBitCount();
    setup.frameBytes = FrameBytes(w, h, setup.bitCount);
    setup.drawMouse = drawMouse;
    buffer.assign(static_cast<size_t>(setup.frameBytes), 0xAB);
    EXPECT_EQ(source->SetUp(setup), 0);
  }
  const uint8_t* At(int32_t x, int32_t y) { return source->Grab(x, y, buffer.data()); }
};

struct Rect {
  int32_t left, top, w, h;
};

// A grab of `region` while the pattern window at `window` shows `frame`: the
// window's pixels where the region is on the screen, black elsewhere.
std::vector<uint8_t> ExpectedGrab(const Rect& region, const Rect& window, int32_t frame,
                                  bool bottomUp) {
  const int32_t screenW = GetSystemMetrics(SM_CXSCREEN), screenH = GetSystemMetrics(SM_CYSCREEN);
  std::vector<uint8_t> want(size_t(region.w) * size_t(region.h) * 4, 0);
  for (int32_t y = 0; y < region.h; ++y) {
    for (int32_t x = 0; x < region.w; ++x) {
      const int32_t sx = region.left + x, sy = region.top + y;
      if (sx < 0 || sy < 0 || sx >= screenW || sy >= screenH) continue;
      const uint32_t c = test::PatternColour(sx - window.left, sy - window.top, frame);
      uint8_t* p = &want[(size_t(bottomUp ? region.h - 1 - y : y) * size_t(region.w) + x) * 4];
      p[0] = uint8_t(c), p[1] = uint8_t(c >> 8), p[2] = uint8_t(c >> 16);
    }
  }
  return want;
}

// The tall region is read from the screen in several bands; its height is no
// multiple of a band, and a band is no multiple of the pattern's period. The
// corner regions hang three quarters off the screen (right/bottom, or
// left/top as a follow-mouse region gets near the origin), each grabbed
// after the window itself, so the off-screen part must be black rather than
// the pattern grabbed before.
TEST(ScreenGrabber, EveryMethodGrabsThePaintedPixelsInItsRowOrderAndBlackOffTheScreen) {
  EXPECT_EQ(win::DisplayBitCount(), 32);  // Xvfb's 24 bits of colour, as Wine's GDI reports them
  EXPECT_EQ(win::MakeScreenGrabber(3), nullptr);
  const int32_t screenW = GetSystemMetrics(SM_CXSCREEN), screenH = GetSystemMetrics(SM_CYSCREEN);
  const struct {
    Rect window;
    int32_t regionLeft, regionTop;
  } cases[] = {{{kLeft, kTop, kW, kH}, kLeft, kTop},
               {{40, 30, 1000, 700}, 40, 30},
               {{screenW - kW, screenH - kH, kW, kH}, screenW - kW / 2, screenH - kH / 2},
               {{0, 0, kW, kH}, -kW / 2, -kH / 2}};
  for (const auto& c : cases) {
    const Rect& at = c.window;
    const Rect region{c.regionLeft, c.regionTop, at.w, at.h};
    PatternWindow window(at.left, at.top, at.w, at.h);
    for (int32_t method = 0; method <= 2; ++method) {
      SCOPED_TRACE(testing::Message() << "method " << method << " region " << region.left);
      Grab grab(method, false, at.w, at.h);
      const uint8_t* first = nullptr;
      for (int32_t frame = 1; frame <= 3; ++frame) {
        window.Show(frame);
        grab.At(at.left, at.top);
        const uint8_t* got = grab.At(region.left, region.top);
        const auto want = ExpectedGrab(region, at, frame, method != 0);
        EXPECT_EQ(FirstDifferentPixel(got, want.data(), at.w * at.h), -1) << "frame " << frame;
        // Type2's frame is the section's memory, the same memory every time.
        EXPECT_EQ(got == grab.buffer.data(), method != 2);
        EXPECT_TRUE(!first || got == first);
        first = got;
      }
      EXPECT_EQ(grab.source->OwnsFrameMemory(), method == 2);
      grab.source->Release();
    }
  }
}

// The cursor is drawn by the code all methods share, so one method shows it.
TEST(ScreenGrabber, CursorIsDrawnWithItsTopLeftAtThePointerOnlyWhenAsked) {
  test::PointerLock pointer;
  PatternWindow window(kLeft, kTop, kW, kH);
  window.Show(2);
  const int px = kLeft + 20, py = kTop + 16;
  SetCursorPos(px, py);
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  test::PumpFor(100);
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  const auto want = ExpectedFrame(kW, kH, 2, false);
  EXPECT_EQ(FirstDifferentPixel(Grab(0, false).At(kLeft, kTop), want.data(), kW * kH), -1);
  Grab withCursor(0, true);
  const uint8_t* got = withCursor.At(kLeft, kTop);
  int changedNear = 0, changedAboveLeft = 0;
  for (int y = 0; y < kH; ++y) {
    for (int x = 0; x < kW; ++x) {
      const size_t at = (size_t(y) * kW + x) * 4;
      if (FirstDifferentPixel(got + at, want.data() + at, 1) != 0) continue;
      if (x >= 20 && x < 20 + 12 && y >= 16 && y < 16 + 12) ++changedNear;
      if (x < 20 || y < 16) ++changedAboveLeft;
    }
  }
  EXPECT_GT(changedNear, 10);      // the arrow is there
  EXPECT_EQ(changedAboveLeft, 0);  // and starts at the pointer, not before it
}

}  // namespace
}  // namespace velmora
