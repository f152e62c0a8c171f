// The grab alone, as the reference a recording is measured against.
#pragma once
#include <cstdint>

namespace velmora::win {

// Frames per second of grabbing a `width` x `height` region at the screen's
// top-left corner with `method`, over about `ms` milliseconds.
double CaptureOnlyRate(int32_t method, int32_t width, int32_t height, double ms);

// The same area read the plain way, one block copy into a 32-bit DIB section
// per frame: the reference for the grabbers' banded copy.
double OneBlockCopyRate(int32_t width, int32_t height, double ms);

}  // namespace velmora::win
