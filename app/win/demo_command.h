// velmora.exe /demo FOLDER: a short scripted recording for `make run` on a
// machine without a display: the application's window is shown and the
// screen round it is recorded into FOLDER\demo.QRK.
#pragma once
#include <string>
#include <vector>

namespace velmora::win {

int RunDemoCommand(const std::vector<std::wstring>& args);

}  // namespace velmora::win
