// Form3, the region selector: a top-most window over the whole screen that
// shows a frozen copy of it, on which the user drags a rectangle or picks
// the window under the mouse. Coordinates are physical screen pixels (the
// program is per-monitor DPI aware).
#pragma once
#include <windows.h>

#include <cstdint>

#include "app/region_drag.h"  // RegionChoice

namespace velmora::win {

enum class SelectorMode {
  DragRegion,      // a rubber band from the button-down corner to the button-up corner
  PickWindow,      // the whole window under the mouse
  PickClientArea,  // only its client area
};

// The selector's window class, so that tests can find it.
inline constexpr wchar_t kRegionSelectorClass[] = L"VelmoraRegionSelector";

// Shows the selector and returns once the user has dragged, picked or
// cancelled; messages of the thread keep running meanwhile. `owner` (the main
// window) is never offered as a pick; the caller hides it first, so that the
// frozen picture does not show it. `method` (the capture method) is for the
// hint, which shows the width the region boxes will get.
RegionChoice SelectRegion(HINSTANCE instance, HWND owner, SelectorMode mode, int32_t method);

}  // namespace velmora::win
