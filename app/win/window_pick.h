// Taking the window under the mouse: which top-level window the user points
// at, and the rectangle a pick takes from it, in physical screen pixels.
#pragma once
#include <windows.h>

#include "app/window_positions.h"  // ScreenRect

namespace velmora::win {

// The top-level window under `pt` in Z order, passing over `skip1`, `skip2`,
// hidden, minimised, cloaked and click-through windows; null when none.
HWND TopLevelWindowAt(POINT pt, HWND skip1, HWND skip2);

// What a pick takes from `wnd`: its client area, or the whole window as the
// user sees it (without the invisible resize borders where the desktop
// compositor reports them).
ScreenRect PickedRect(HWND wnd, bool clientArea);

}  // namespace velmora::win
