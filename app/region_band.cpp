#include "app/region_band.h"

namespace velmora {

BandGeometry BandAround(int32_t left, int32_t top, int32_t width, int32_t height,
                        int32_t thickness) {
  return {{left - thickness, top - thickness, width + 2 * thickness, height + 2 * thickness},
          {thickness, thickness, width, height}};
}

}  // namespace velmora
