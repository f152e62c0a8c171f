// Movie to AVI without a window: the conversion and, when a wave file is
// given, the sound merge, with a one-line summary. What the command line
// of velmora.exe runs for /convert.
#pragma once
#include <cstdint>
#include <string>

namespace velmora::win {

// Returns 0, the header query's code, the re-encoding's code, or the AVI
// library's first failing status; `summary` says what happened (UTF-8). An
// empty `waveFile` means no sound. With `to24` a movie not already at 24
// bits is first re-encoded to 24-bit Type1 (into OUT.avi + ".qrk24", removed
// afterwards), or, when its width cannot be re-encoded, its frames are drawn
// and read back at 24 bits.
int32_t ConvertMovieToAvi(const std::string& qrkFile, const std::string& aviFile,
                          const std::string& waveFile, std::string& summary, bool to24 = false);

}  // namespace velmora::win
