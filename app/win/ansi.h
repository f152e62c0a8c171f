// The one place where text crosses between UTF-8 and the system's ANSI code
// page (Shift-JIS on a Japanese system), for file formats that demand ANSI.
#pragma once
#include <optional>
#include <string>

#include "app/capture_settings.h"

namespace velmora::win {

// nullopt when the text is not valid UTF-8 or holds a character the code
// page cannot represent (a substituted '?' would silently change a path).
std::optional<std::string> AnsiFromUtf8(const std::string& utf8);
// nullopt when the bytes are not valid in the code page.
std::optional<std::string> Utf8FromAnsi(const std::string& ansi);

// The two conversions as the settings file takes them.
AnsiCodec SystemAnsiCodec();

}  // namespace velmora::win
