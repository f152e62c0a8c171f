#include "app/win/preview.h"

#include <algorithm>

#include "engine/win/handles.h"

namespace velmora::win {

RECT PreviewSource(const CaptureSettings& s) {
  POINT origin{s.Left, s.Top};
  if (IsTrue16(s.FollowMouse)) {
    POINT cursor{};
    GetCursorPos(&cursor);
    origin = {cursor.x - s.Width / 2, cursor.y - s.Height / 2};
  }
  return RECT{origin.x, origin.y, origin.x + std::max(0, s.Width),
              origin.y + std::max(0, s.Height)};
}

void DrawRegionPreview(HDC dc, const RECT& box, const RECT& source) {
  const int boxW = box.right - box.left;
  const int boxH = box.bottom - box.top;
  const int srcW = source.right - source.left;
  const int srcH = source.bottom - source.top;
  if (boxW <= 0 || boxH <= 0) return;

  // Drawn off screen first so the timer's redraws do not flicker.
  UniqueMemoryDc memory(CreateCompatibleDC(dc));
  UniqueBitmap bitmap(CreateCompatibleBitmap(dc, boxW, boxH));
  SelectGuard selected(memory.get(), bitmap.get());
  RECT all{0, 0, boxW, boxH};
  FillRect(memory.get(), &all, GetSysColorBrush(COLOR_APPWORKSPACE));
  if (srcW > 0 && srcH > 0) {
    // Fit inside the box, proportions kept, never enlarged past 1:1.
    const double scale =
        std::min({static_cast<double>(boxW) / srcW, static_cast<double>(boxH) / srcH, 1.0});
    const int w = std::max(1, static_cast<int>(srcW * scale));
    const int h = std::max(1, static_cast<int>(srcH * scale));
    WindowDc screen = WindowDc::Get(nullptr);
    SetStretchBltMode(memory.get(), HALFTONE);
    SetBrushOrgEx(memory.get(), 0, 0, nullptr);
    StretchBlt(memory.get(), (boxW - w) / 2, (boxH - h) / 2, w, h, screen.get(), source.left,
               source.top, srcW, srcH, SRCCOPY | CAPTUREBLT);
  }
  BitBlt(dc, box.left, box.top, boxW, boxH, memory.get(), 0, 0, SRCCOPY);
}

}  // namespace velmora::win
