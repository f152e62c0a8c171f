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

TEST(ScreenGrabber, DisplayDepthIsTheDeviceDepth) {
  // Xvfb runs at 24 bits of colour; Wine's GDI reports 32 bits per pixel.
  EXPECT_EQ(win::DisplayBitCount(), 32);
  EXPECT_EQ(win::MakeScreenGrabber(3), nullptr);
}

TEST(ScreenGrabber, EveryMethodGrabsThePaintedPixelsInItsRowOrder) {
  // The tall region is read from the screen in several bands; its height is
  // no multiple of a band, and a band is no multiple of the pattern's period.
  const struct {
    int32_t left, top, w, h;
  } regions[] = {{kLeft, kTop, kW, kH}, {40, 30, 1000, 700}};
  for (const auto& r : regions) {
    PatternWindow window(r.left, r.top, r.w, r.h);
    for (int32_t method = 0; method <= 2; ++method) {
      SCOPED_TRACE(testing::Message() << "method " << method << " width " << r.w);
      Grab grab(method, false, r.w, r.h);
      const uint8_t* first = nullptr;
      for (int32_t frame = 1; frame <= 3; ++frame) {
        window.Show(frame);
        const uint8_t* got = grab.At(r.left, r.top);
        const auto want = ExpectedFrame(r.w, r.h, frame, method != 0);
        EXPECT_EQ(FirstDifferentPixel(got, want.data(), r.w * r.h), -1) << "frame " << frame;
        if (method == 2) {
          // The section's memory is the frame, the same memory every time.
          EXPECT_NE(got, grab.buffer.data());
          if (first) {
            EXPECT_EQ(got, first);
          }
          first = got;
        } else {
          EXPECT_EQ(got, grab.buffer.data());
        }
      }
      EXPECT_EQ(grab.source->OwnsFrameMemory(), method == 2);
      grab.source->Release();
    }
  }
}

// A window in a screen corner, and a region centred on that corner so that
// three quarters of it hang off the screen (right/bottom, or left/top as a
// follow-mouse region gets near the origin): the on-screen quarter shows the
// window, the rest is black — never the pattern grabbed before.
void ExpectCornerQuarterOnly(bool farCorner) {
  const int32_t screenW = GetSystemMetrics(SM_CXSCREEN);
  const int32_t screenH = GetSystemMetrics(SM_CYSCREEN);
  const int32_t winX = farCorner ? screenW - kW : 0, winY = farCorner ? screenH - kH : 0;
  PatternWindow window(winX, winY, kW, kH);
  window.Show(5);
  for (int32_t method = 0; method <= 2; ++method) {
    SCOPED_TRACE(method);
    Grab grab(method, false);
    {  // fill the bitmap with the pattern first
      const auto want = ExpectedFrame(kW, kH, 5, method != 0);
      ASSERT_EQ(FirstDifferentPixel(grab.At(winX, winY), want.data(), kW * kH), -1);
    }
    const int32_t regionX = farCorner ? screenW - kW / 2 : -kW / 2;
    const int32_t regionY = farCorner ? screenH - kH / 2 : -kH / 2;
    const uint8_t* got = grab.At(regionX, regionY);
    for (int row = 0; row < kH; ++row) {
      const int y = method == 0 ? row : kH - 1 - row;  // y within the region
      for (int x = 0; x < kW; ++x) {
        const uint8_t* p = got + (static_cast<size_t>(row) * kW + x) * 4;
        const uint32_t colour = p[0] | p[1] << 8 | p[2] << 16;
        const bool onScreen = farCorner ? (x < kW / 2 && y < kH / 2) : (x >= kW / 2 && y >= kH / 2);
        if (onScreen) {
          // Window coordinates of this pixel.
          const int wx = x + regionX - winX, wy = y + regionY - winY;
          ASSERT_EQ(colour, test::PatternColour(wx, wy, 5)) << "x " << x << " y " << y;
        } else {
          ASSERT_EQ(colour, 0u) << "x " << x << " y " << y;
        }
      }
    }
  }
}

TEST(ScreenGrabber, PartsOfTheRegionOffTheScreenAreBlack) {
  ExpectCornerQuarterOnly(true);
  ExpectCornerQuarterOnly(false);
}

TEST(ScreenGrabber, CursorIsDrawnWithItsTopLeftAtThePointerOnlyWhenAsked) {
  test::PointerLock pointer;
  PatternWindow window(kLeft, kTop, kW, kH);
  window.Show(2);
  const int px = kLeft + 20, py = kTop + 16;
  SetCursorPos(px, py);
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  test::PumpFor(100);
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  for (int32_t method = 0; method <= 2; ++method) {
    SCOPED_TRACE(method);
    const auto want = ExpectedFrame(kW, kH, 2, method != 0);
    {
      Grab plain(method, false);
      EXPECT_EQ(FirstDifferentPixel(plain.At(kLeft, kTop), want.data(), kW * kH), -1);
    }
    Grab withCursor(method, true);
    const uint8_t* got = withCursor.At(kLeft, kTop);
    int changedNear = 0, changedAboveLeft = 0;
    for (int y = 0; y < kH; ++y) {
      for (int x = 0; x < kW; ++x) {
        const size_t row = method == 0 ? y : kH - 1 - y;
        const size_t at = (row * kW + x) * 4;
        const bool changed = FirstDifferentPixel(got + at, want.data() + at, 1) == 0;
        if (!changed) continue;
        if (x >= 20 && x < 20 + 12 && y >= 16 && y < 16 + 12) ++changedNear;
        if (x < 20 || y < 16) ++changedAboveLeft;
      }
    }
    EXPECT_GT(changedNear, 10);      // the arrow is there
    EXPECT_EQ(changedAboveLeft, 0);  // and starts at the pointer, not before it
  }
}

}  // namespace
}  // namespace velmora
