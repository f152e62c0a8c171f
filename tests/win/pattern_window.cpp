#include "tests/win/pattern_window.h"

#include "engine/win/handles.h"
#include "engine/win/win_clock.h"
#include "engine/win/win_idioms.h"

namespace velmora::test {
uint32_t PatternColour(int32_t x, int32_t y, int32_t frame) {
  const uint32_t r = static_cast<uint32_t>(x * 7 + frame * 31) & 0xFF;
  const uint32_t g = static_cast<uint32_t>(y * 5 + frame * 17) & 0xFF;
  const uint32_t b = static_cast<uint32_t>((x ^ y) + frame * 3 + 40) & 0xFF;
  return r << 16 | g << 8 | b;
}

PointerLock::PointerLock() : mutex_(CreateMutexW(nullptr, FALSE, L"VelmoraPointerTests")) {
  WaitForSingleObject(mutex_, 120000);
}

PointerLock::~PointerLock() {
  ReleaseMutex(mutex_);
  CloseHandle(mutex_);
}

void PumpFor(int ms) {
  win::WinClock clock;
  for (const double end = clock.NowMs() + ms; clock.NowMs() < end;) {
    clock.PumpMessages();
    clock.SleepMs(5);
  }
}

bool WaitUntil(const std::function<bool()>& shown, int ms) {
  for (int waited = 0; waited < ms; waited += 20) {
    if (shown()) return true;
    PumpFor(20);
  }
  return shown();
}

PatternWindow::PatternWindow(int32_t left, int32_t top, int32_t width, int32_t height)
    : width_(width), height_(height) {
  static const wchar_t* const kClass = L"VelmoraPatternWindow";
  win::RegisterWindowClass(kClass, Proc);
  wnd_ = CreateWindowExW(WS_EX_TOPMOST, kClass, L"pattern", WS_POPUP | WS_VISIBLE, left, top, width,
                         height, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(wnd_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetForegroundWindow(wnd_);
  PumpFor(100);  // until the window is mapped
  Show(0);
}

PatternWindow::~PatternWindow() {
  if (wnd_) DestroyWindow(wnd_);
  PumpFor(50);
}

void PatternWindow::Show(int32_t frame) {
  frame_ = frame;
  // Painting straight into the window's DC puts the pixels on the screen
  // without waiting for a WM_PAINT round trip.
  Paint(win::WindowDc::Get(wnd_).get());
  GdiFlush();
  ValidateRect(wnd_, nullptr);
  // Wine pushes a window's pixels to the X server a little later, and later
  // still when the machine is busy; grabs read the X server, so wait until
  // it shows the whole pattern. A window that something else covers gives up
  // after a while and leaves the verdict to the test's own comparison.
  const std::vector<uint8_t> want = ExpectedFrame(width_, height_, frame_, true);
  RECT r{};
  GetWindowRect(wnd_, &r);
  for (const DWORD start = GetTickCount(); GetTickCount() - start < 5000;) {
    PumpFor(20);
    const std::vector<uint8_t> shown = ScreenPixels(r);
    if (shown.size() == want.size() &&
        FirstDifferentPixel(shown.data(), want.data(), int64_t{width_} * height_) < 0)
      break;
  }
}

std::vector<uint8_t> ScreenPixels(const RECT& r, BITMAPINFOHEADER* header) {
  const int32_t w = r.right - r.left, h = r.bottom - r.top;
  BITMAPINFO bi{};
  bi.bmiHeader = win::DibHeader(w, h, 32);
  void* bits = nullptr;
  win::WindowDc screen = win::WindowDc::Get(nullptr);
  win::UniqueMemoryDc memory(CreateCompatibleDC(screen.get()));
  win::UniqueBitmap section(CreateDIBSection(screen.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!memory || !section || !bits) return {};
  win::SelectGuard selected(memory.get(), section.get());
  if (!BitBlt(memory.get(), 0, 0, w, h, screen.get(), r.left, r.top, SRCCOPY)) return {};
  GdiFlush();
  if (header) *header = bi.bmiHeader;
  const auto* p = static_cast<const uint8_t*>(bits);
  return std::vector<uint8_t>(p, p + static_cast<size_t>(w) * h * 4);
}

void PatternWindow::Paint(HDC dc) {
  BITMAPINFO bi{};
  bi.bmiHeader = win::DibHeader(width_, -height_, 32);  // top row first
  const std::vector<uint8_t> px = ExpectedFrame(width_, height_, frame_, false);
  SetDIBitsToDevice(dc, 0, 0, width_, height_, 0, 0, 0, height_, px.data(), &bi, DIB_RGB_COLORS);
}

LRESULT CALLBACK PatternWindow::Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  auto* self = reinterpret_cast<PatternWindow*>(GetWindowLongPtrW(wnd, GWLP_USERDATA));
  if (msg == WM_PAINT && self) {
    win::PaintDc paint(wnd);
    self->Paint(paint.get());
    return 0;
  }
  if (msg == WM_ERASEBKGND) return 1;
  return DefWindowProcW(wnd, msg, wp, lp);
}

std::vector<uint8_t> ExpectedFrame(int32_t width, int32_t height, int32_t frame, bool bottomUp) {
  std::vector<uint8_t> out(static_cast<size_t>(width) * height * 4);
  for (int row = 0; row < height; ++row) {
    const int y = bottomUp ? height - 1 - row : row;
    for (int x = 0; x < width; ++x) {
      const uint32_t c = PatternColour(x, y, frame);
      uint8_t* p = &out[(static_cast<size_t>(row) * width + x) * 4];
      p[0] = c & 0xFF;
      p[1] = (c >> 8) & 0xFF;
      p[2] = (c >> 16) & 0xFF;
    }
  }
  return out;
}

int64_t FirstDifferentPixel(const uint8_t* a, const uint8_t* b, int64_t pixels) {
  for (int64_t i = 0; i < pixels; ++i) {
    if (a[i * 4] != b[i * 4] || a[i * 4 + 1] != b[i * 4 + 1] || a[i * 4 + 2] != b[i * 4 + 2])
      return i;
  }
  return -1;
}

bool ScreenShows(const RECT& r, uint32_t rgb) {
  const std::vector<uint8_t> px = ScreenPixels(r);
  for (size_t i = 0; i + 3 <= px.size(); i += 4) {
    if (uint32_t(px[i + 2] << 16 | px[i + 1] << 8 | px[i]) == rgb) return true;
  }
  return false;
}

}  // namespace velmora::test
