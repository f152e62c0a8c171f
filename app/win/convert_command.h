// velmora.exe /convert MOVIE.QRK OUT.avi [WAVE.wav] [/24]: the movie as an
// AVI at its own depth (with /24 at 24 bits), uncompressed, the wave merged
// when given; a one-line summary on the console and the status as the exit
// code.
#pragma once
#include <string>
#include <vector>

#include "app/win/command_line.h"

namespace velmora::win {

VerbResult RunConvertCommand(const std::vector<std::wstring>& args);

}  // namespace velmora::win
