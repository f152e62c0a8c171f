// Gathers what the disk estimate needs about the volume that will hold a
// movie; the estimate itself is portable (app/capture_info.h).
#pragma once
#include <string>

#include "app/capture_info.h"

namespace velmora::win {

// Free bytes (the volume's total, not the caller's quota) and file-system
// name of the volume holding `utf8MoviePath` (its drive root, or the share
// root of a network path), the platform family and the physical memory.
// An unreadable volume gives 0 free bytes and no file-system name.
VolumeDescription DescribeMovieVolume(const std::string& utf8MoviePath);

}  // namespace velmora::win
