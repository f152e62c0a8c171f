#include "app/region_selection.h"

#include <algorithm>
#include <limits>

#include "app/main_window_values.h"

namespace velmora {

ScreenRect RectFromCorners(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
  return {std::min(x1, x2), std::min(y1, y2), std::max(x1, x2), std::max(y1, y2)};
}

std::optional<std::array<std::string, 4>> RegionBoxesFor(const ScreenRect& r, int32_t displayDepth,
                                                         int32_t method) {
  // In 64 bits: a picked window's rectangle comes from another program and
  // may be anything.
  const int64_t width = int64_t{r.right} - r.left;
  const int64_t height = int64_t{r.bottom} - r.top;
  constexpr int64_t kMax = std::numeric_limits<int32_t>::max();
  if (width > kMax || height > kMax) return std::nullopt;
  const RegionBoxCheck w = CheckRegionBox(2, std::to_string(width));
  const RegionBoxCheck h = CheckRegionBox(3, std::to_string(height));
  if (!w.accepted || !h.accepted) return std::nullopt;
  const int32_t recordable = RegionWidthForDepth(w.value, displayDepth, method);
  if (recordable < 1) return std::nullopt;
  return std::array<std::string, 4>{std::to_string(r.left), std::to_string(r.top),
                                    std::to_string(recordable), h.text};
}

std::string SelectorHint(bool pickWindow, const std::optional<std::array<std::string, 4>>& boxes) {
  constexpr char kCancel[] = "（右クリック・Escで取り消し）";
  if (boxes) {
    const auto& b = *boxes;
    return b[0] + ", " + b[1] + "  " + b[2] + " × " + b[3] + "  " + kCancel;
  }
  return std::string(pickWindow ? "クリックでウィンドウを指定" : "ドラッグで領域を指定") + kCancel;
}

}  // namespace velmora
