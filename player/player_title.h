// The player window's title: the movie's file name and the frame counter.
#pragma once
#include <cstdint>
#include <string>

namespace velmora {

// "name.QRK - 12/150": the bare file name (no folder, either separator),
// the number of frames played so far and the movie's frame count.
std::string PlayerTitle(const std::string& utf8Path, int64_t framesPlayed, int64_t frameCount);

}  // namespace velmora
