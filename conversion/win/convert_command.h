// Movie to AVI without a window: the conversion and, when a wave file is
// given, the sound merge, with a one-line summary. What the command line
// of velmora.exe runs for /convert.
#pragma once
#include <cstdint>
#include <string>

namespace velmora::win {

// Returns 0, the header query's code, or the AVI library's first failing
// status; `summary` says what happened (UTF-8). An empty `waveFile` means
// no sound.
int32_t ConvertMovieToAvi(const std::string& qrkFile, const std::string& aviFile,
                          const std::string& waveFile, std::string& summary);

}  // namespace velmora::win
