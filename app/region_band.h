// The coloured band that shows the user what is being recorded: a frame of
// `thickness` pixels lying wholly outside the recorded rectangle, so the
// grabs (which read the rectangle straight off the screen) never contain it.
#pragma once
#include <cstdint>

namespace velmora {

struct BandRect {
  int32_t left, top, width, height;
  friend bool operator==(const BandRect&, const BandRect&) = default;
};

struct BandGeometry {
  BandRect outer;  // the band's window, in screen pixels
  BandRect hole;   // the recorded rectangle, relative to `outer`; left out of the window
};

inline constexpr int32_t kBandThickness = 3;
// An orange that stands out on most screens.
struct BandColour {
  uint8_t red, green, blue;
};
inline constexpr BandColour kBandColour{255, 64, 0};

BandGeometry BandAround(int32_t left, int32_t top, int32_t width, int32_t height,
                        int32_t thickness = kBandThickness);

}  // namespace velmora
