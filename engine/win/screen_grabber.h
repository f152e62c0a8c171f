// The three ways of grabbing a screen region with GDI (Type0, Type1, Type2).
// All objects are made once per recording in SetUp and released in Release
// (or by the destructor); per frame there is at most one black fill, one
// block copy (in bands for a tall region), one cursor draw and one read-out.
#pragma once
#include <cstdint>
#include <memory>

#include "engine/capture_interfaces.h"

namespace velmora::win {

// Type0 reads the device's own rows (top row first) with GetBitmapBits,
// Type1 reads device-independent bottom-up rows with GetDIBits (plus the
// colour table at 8 bits), Type2 copies straight into a DIB section, whose
// memory is then the frame. Returns null for a method outside 0..2.
std::unique_ptr<FrameSource> MakeScreenGrabber(int32_t method);

// Bits per pixel of the display: a 1x1 bitmap compatible with the screen.
int32_t DisplayBitCount();

}  // namespace velmora::win
