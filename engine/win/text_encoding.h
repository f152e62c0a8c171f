// The one place where text changes encoding: UTF-8 inside the program,
// UTF-16 at the Win32 boundary, and the system's ANSI code page (Shift-JIS on
// a Japanese system) for the formats that demand it: settings files, the
// recorder block's file names, the AVI writer's text arguments and the names
// it reports.
#pragma once
#include <cstddef>
#include <optional>
#include <string>

namespace velmora::win {

// UTF-8 <-> UTF-16 at the Win32 boundary.
std::wstring Widen(const std::string& utf8);
std::string Narrow(const std::wstring& utf16);

// nullopt when the text is not valid UTF-8 or holds a character the code
// page cannot represent (a substituted '?' would silently change a path).
std::optional<std::string> AnsiFromUtf8(const std::string& utf8);
// nullopt when the bytes are not valid in the code page.
std::optional<std::string> Utf8FromAnsi(const std::string& ansi);
// ANSI bytes as UTF-16 for the wide file functions; nullopt as above.
std::optional<std::wstring> WideFromAnsi(const std::string& ansi);

// Lenient forms for names and messages handed on as they stand (AVI5.DLL's
// text arguments and the buffers it fills): a character the code page lacks
// becomes its default character, invalid bytes are dropped.
std::string AnsiToUtf8(const char* ansi);
std::string Utf8ToAnsi(const std::string& utf8);
std::string WideToAnsi(const wchar_t* wide);
// Copies ANSI text into a caller's buffer of `capacity` bytes, NUL-terminated,
// never ending inside a double-byte character.
void CopyAnsi(const std::string& ansi, char* out, size_t capacity);

}  // namespace velmora::win
