// The one place where text crosses between UTF-8 (or UTF-16) and the
// system's ANSI code page (Shift-JIS on a Japanese system), for the formats
// that demand ANSI: settings files, the recorder block's file names, the AVI
// writer's text arguments.
#pragma once
#include <optional>
#include <string>

namespace velmora::win {

// nullopt when the text is not valid UTF-8 or holds a character the code
// page cannot represent (a substituted '?' would silently change a path).
std::optional<std::string> AnsiFromUtf8(const std::string& utf8);
// nullopt when the bytes are not valid in the code page.
std::optional<std::string> Utf8FromAnsi(const std::string& ansi);
// ANSI bytes as UTF-16 for the wide file functions; nullopt as above.
std::optional<std::wstring> WideFromAnsi(const std::string& ansi);

}  // namespace velmora::win
