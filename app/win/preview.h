// The main window's preview: the capture region, scaled to fit the preview
// box with its proportions kept, read from the screen when drawn.
#pragma once
#include <windows.h>

#include "app/capture_settings.h"

namespace velmora::win {

// The screen rectangle a recording with `s` would take now: the region
// boxes, or the same size centred on the mouse when it follows the mouse.
RECT PreviewSource(const CaptureSettings& s);

// Draws `source` (screen pixels) into `box` of `dc`, letterboxed in the
// window colour; an empty source leaves only the background.
void DrawRegionPreview(HDC dc, const RECT& box, const RECT& source);

}  // namespace velmora::win
