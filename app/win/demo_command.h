// velmora.exe /demo FOLDER: a short scripted recording for `make run` on a
// machine without a display: the application's window is shown and the
// screen round it is recorded into FOLDER\demo.QRK.
#pragma once
#include <string>
#include <vector>

#include "app/win/command_line.h"

namespace velmora::win {

VerbResult RunDemoCommand(const std::vector<std::wstring>& args);

}  // namespace velmora::win
