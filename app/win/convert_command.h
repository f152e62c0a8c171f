// velmora.exe /convert MOVIE.QRK OUT.avi [WAVE.wav]: the movie as an AVI at
// its own depth, uncompressed, the wave merged when given; a one-line
// summary on the console and the status as the exit code.
#pragma once
#include <string>
#include <vector>

namespace velmora::win {

int RunConvertCommand(const std::vector<std::wstring>& args);

}  // namespace velmora::win
