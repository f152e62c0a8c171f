// The band round the recorded rectangle while a recording runs: top-most,
// never activated, click-through, and shaped so that it covers only the
// pixels just outside the rectangle (app/region_band.h).
#pragma once
#include <windows.h>

#include <cstdint>

#include "engine/win/handles.h"

namespace velmora::win {

class RegionBandWindow {
 public:
  // Shows the band round the rectangle (made on first use).
  void Show(int32_t left, int32_t top, int32_t width, int32_t height);
  // Follows a rectangle of the same size to its new corner.
  void MoveTo(int32_t left, int32_t top);
  void Hide();
  HWND Handle() const { return wnd_.get(); }

 private:
  UniqueWindow wnd_;
  int32_t left_ = 0, top_ = 0;
};

}  // namespace velmora::win
