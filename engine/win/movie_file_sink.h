// The movie writers the Capture class records through: ordinary file
// writes, or a pre-allocated file written through a sliding mapping.
#pragma once
#include <memory>

#include "engine/capture_interfaces.h"

namespace velmora::win {

std::unique_ptr<MovieSink> MakeMovieFileSink(bool mapped);

}  // namespace velmora::win
