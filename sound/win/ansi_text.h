// The one place where text meets the system's ANSI code page: file names in
// the recorder block are ANSI bytes, the rest of the program speaks UTF-8 and
// UTF-16.
#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace velmora::win {

// UTF-8 to ANSI bytes. Nothing when a character has no exact form in the
// code page: a best-fit substitute would name a different file.
std::optional<std::string> Utf8ToAnsi(std::string_view utf8);

std::string AnsiToUtf8(std::string_view ansi);
std::wstring AnsiToWide(std::string_view ansi);

}  // namespace velmora::win
