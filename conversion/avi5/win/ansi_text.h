// The one place where text crosses between UTF-8 and the ANSI code page
// (CP_ACP): AVI5.DLL's text arguments and the buffers it fills.
#pragma once
#include <cstddef>
#include <string>

namespace velmora::win {

std::string AnsiToUtf8(const char* ansi);
std::string Utf8ToAnsi(const std::string& utf8);
std::string WideToAnsi(const wchar_t* wide);
// Copies ANSI text into a caller's buffer of `capacity` bytes, NUL-terminated,
// never ending inside a double-byte character.
void CopyAnsi(const std::string& ansi, char* out, size_t capacity);

}  // namespace velmora::win
