// A small window standing in for the main window until it exists.
#pragma once
#include <windows.h>

namespace velmora::win {

int RunPlaceholderWindow(HINSTANCE instance, int show);

}  // namespace velmora::win
