// A small window standing in for the main window until it exists.
#pragma once
#include <windows.h>

#include <string>

namespace velmora::win {

// `extraLine` (UTF-8) follows the standing text on its own line, in the
// window's one text control, where tests can read it.
HWND CreatePlaceholderWindow(HINSTANCE instance, int x, int y, const std::string& extraLine = {});
int RunPlaceholderWindow(HINSTANCE instance, int show, const std::string& extraLine = {});

}  // namespace velmora::win
