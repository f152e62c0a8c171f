// A small window standing in for the main window until it exists.
#pragma once
#include <windows.h>

namespace velmora::win {

HWND CreatePlaceholderWindow(HINSTANCE instance, int x, int y);
int RunPlaceholderWindow(HINSTANCE instance, int show);

}  // namespace velmora::win
