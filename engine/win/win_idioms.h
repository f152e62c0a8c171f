// Win32 idioms the program would otherwise repeat: deleting a file even when
// it is read-only, the header of an uncompressed device-independent bitmap,
// a window class registered by name, and the program's own arguments.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::win {

// Clears the read-only attribute first: a user's read-only file of the same
// name must not survive a replace. False when no file was deleted.
bool ForceDelete(const std::wstring& path);
bool ForceDelete(const std::string& utf8Path);

// An uncompressed (BI_RGB) header; a positive `height` means bottom row
// first, a negative one top row first.
BITMAPINFOHEADER DibHeader(int32_t width, int32_t height, int32_t bitCount);

// Registers a window class of this process with a system cursor (none: the
// window keeps whatever cursor the mouse brings). A second registration of
// the same name fails harmlessly (false), so callers need not remember
// whether they ran before.
bool RegisterWindowClass(const wchar_t* name, WNDPROC proc, HBRUSH background = nullptr,
                         const wchar_t* cursor = IDC_ARROW);

// The command line's arguments after the program name.
std::vector<std::wstring> ProgramArguments();

}  // namespace velmora::win
