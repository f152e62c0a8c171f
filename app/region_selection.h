// Turning a rectangle taken with the mouse (dragged on the selector or a
// picked window) into what the main window's region boxes show.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "app/window_positions.h"  // ScreenRect: right and bottom lie just outside

namespace velmora {

// The rectangle between the corner where the drag began and the one where it
// ended, whichever way the mouse went.
ScreenRect RectFromCorners(int32_t x1, int32_t y1, int32_t x2, int32_t y2);

// The left, top, width and height boxes' texts for `r`, with the width put
// through the same size check as a typed width. Nothing (the boxes stay as
// they are) when the rectangle has no area, as after a click without a drag,
// or when no width of it can be recorded.
std::optional<std::array<std::string, 4>> RegionBoxesFor(const ScreenRect& r, int32_t displayDepth,
                                                         int32_t method);

// The line the selector shows beside the pointer: what to do, or, once a
// rectangle is marked, the numbers the region boxes will get from it.
std::string SelectorHint(bool pickWindow, const std::optional<std::array<std::string, 4>>& boxes);

}  // namespace velmora
