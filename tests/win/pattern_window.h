// A borderless top-most window that paints a known, frame-numbered pattern,
// so that grabs of the real screen can be compared pixel for pixel.
#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace velmora::test {

// The colour (0x00RRGGBB) of pixel (x, y) of pattern `frame`.
uint32_t PatternColour(int32_t x, int32_t y, int32_t frame);

class PatternWindow {
 public:
  PatternWindow(int32_t left, int32_t top, int32_t width, int32_t height);
  ~PatternWindow();
  PatternWindow(const PatternWindow&) = delete;
  PatternWindow& operator=(const PatternWindow&) = delete;

  // Repaints with pattern `frame` and waits until the screen shows it.
  void Show(int32_t frame);
  HWND Handle() const { return wnd_; }

 private:
  static LRESULT CALLBACK Proc(HWND, UINT, WPARAM, LPARAM);
  void Paint(HDC dc);
  HWND wnd_ = nullptr;
  int32_t width_, height_;
  int32_t frame_ = 0;
};

// Held by tests that place the mouse pointer and rely on it staying put:
// the Windows tests run two at a time on one display.
class PointerLock {
 public:
  PointerLock();
  ~PointerLock();
  PointerLock(const PointerLock&) = delete;
  PointerLock& operator=(const PointerLock&) = delete;

 private:
  HANDLE mutex_;
};

// Lets pending messages run for about `ms` milliseconds.
void PumpFor(int ms);

// Waits up to `ms` until `shown()` holds, letting this thread's messages run
// meanwhile; returns its last answer. For what the screen or a window shows,
// which Wine puts there late on a busy machine.
bool WaitUntil(const std::function<bool()>& shown, int ms = 20000);

// Expected frame bytes for a grab of the pattern window's whole area at 32
// bits: device rows top first (Type0) or device-independent rows bottom
// first (Type1/2). Pixels are blue, green, red, then an ignored byte.
std::vector<uint8_t> ExpectedFrame(int32_t width, int32_t height, int32_t frame, bool bottomUp);

// The screen's pixels in `r` as 32-bit rows, bottom row first, laid out as
// ExpectedFrame(..., true); empty when the screen cannot be read.
std::vector<uint8_t> ScreenPixels(const RECT& r, BITMAPINFOHEADER* header = nullptr);

// Whether some pixel of the screen in `r` has the colour `rgb` (0x00RRGGBB).
bool ScreenShows(const RECT& r, uint32_t rgb);

// Compares the colour bytes of two 32-bit frames (the fourth byte of each
// pixel is left to the device); returns the first differing pixel or -1.
int64_t FirstDifferentPixel(const uint8_t* a, const uint8_t* b, int64_t pixels);

}  // namespace velmora::test
