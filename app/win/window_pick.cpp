#include "app/win/window_pick.h"

#include <dwmapi.h>

namespace velmora::win {
namespace {

struct WindowSearch {
  POINT pt;
  HWND skip1, skip2;
  HWND found = nullptr;
};

bool Cloaked(HWND wnd) {
  DWORD cloaked = 0;
  return SUCCEEDED(DwmGetWindowAttribute(wnd, DWMWA_CLOAKED, &cloaked, sizeof cloaked)) && cloaked;
}

}  // namespace

HWND TopLevelWindowAt(POINT pt, HWND skip1, HWND skip2) {
  WindowSearch search{pt, skip1, skip2};
  // Top-level windows come in Z order, the front one first.
  EnumWindows(
      [](HWND wnd, LPARAM param) -> BOOL {
        auto& s = *reinterpret_cast<WindowSearch*>(param);
        if (wnd == s.skip1 || wnd == s.skip2 || !IsWindowVisible(wnd) || IsIconic(wnd)) return TRUE;
        // Click-through overlays (the recording's frame band among them) are
        // not what the user points at.
        if (GetWindowLongW(wnd, GWL_EXSTYLE) & WS_EX_TRANSPARENT) return TRUE;
        RECT r;
        if (!GetWindowRect(wnd, &r) || !PtInRect(&r, s.pt) || Cloaked(wnd)) return TRUE;
        s.found = wnd;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

ScreenRect PickedRect(HWND wnd, bool clientArea) {
  RECT r{};
  if (clientArea) {
    GetClientRect(wnd, &r);
    MapWindowPoints(wnd, nullptr, reinterpret_cast<POINT*>(&r), 2);
  } else if (FAILED(DwmGetWindowAttribute(wnd, DWMWA_EXTENDED_FRAME_BOUNDS, &r, sizeof r))) {
    GetWindowRect(wnd, &r);
  }
  return {r.left, r.top, r.right, r.bottom};
}

}  // namespace velmora::win
