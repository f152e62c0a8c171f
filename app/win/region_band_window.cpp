#include "app/win/region_band_window.h"

#include "app/region_band.h"
#include "engine/win/win_idioms.h"

namespace velmora::win {
namespace {

constexpr wchar_t kClass[] = L"VelmoraRegionBand";

void RegisterBandClass() {
  static bool registered = false;
  if (registered) return;
  // The class brush paints the band: the window needs no painting of its own.
  registered = RegisterWindowClass(
      kClass, DefWindowProcW,
      CreateSolidBrush(RGB(kBandColour.red, kBandColour.green, kBandColour.blue)), nullptr);
}

}  // namespace

void RegionBandWindow::Show(int32_t left, int32_t top, int32_t width, int32_t height) {
  RegisterBandClass();
  const BandGeometry band = BandAround(left, top, width, height);
  left_ = left;
  top_ = top;
  if (!wnd_) {
    // Layered and transparent: clicks fall through to the window beneath.
    wnd_.reset(CreateWindowExW(
        WS_EX_LAYERED | WS_EX_TRANSPARENT | WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE,
        kClass, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr));
    if (!wnd_) return;
    SetLayeredWindowAttributes(wnd_.get(), 0, 255, LWA_ALPHA);
  }
  SetWindowPos(wnd_.get(), HWND_TOPMOST, band.outer.left, band.outer.top, band.outer.width,
               band.outer.height, SWP_NOACTIVATE);
  // The window keeps only the band: the recorded rectangle is cut out of it,
  // so not one of its pixels can stand inside what is grabbed.
  UniqueRegion shape(CreateRectRgn(0, 0, band.outer.width, band.outer.height));
  UniqueRegion hole(CreateRectRgn(band.hole.left, band.hole.top, band.hole.left + band.hole.width,
                                  band.hole.top + band.hole.height));
  CombineRgn(shape.get(), shape.get(), hole.get(), RGN_DIFF);
  if (SetWindowRgn(wnd_.get(), shape.get(), TRUE)) shape.release();  // the system owns it now
  ShowWindow(wnd_.get(), SW_SHOWNOACTIVATE);
  UpdateWindow(wnd_.get());
}

void RegionBandWindow::MoveTo(int32_t left, int32_t top) {
  if (!wnd_ || (left == left_ && top == top_)) return;
  left_ = left;
  top_ = top;
  const BandRect outer = BandAround(left, top, 0, 0).outer;
  SetWindowPos(wnd_.get(), nullptr, outer.left, outer.top, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void RegionBandWindow::Hide() {
  if (wnd_) ShowWindow(wnd_.get(), SW_HIDE);
}

}  // namespace velmora::win
