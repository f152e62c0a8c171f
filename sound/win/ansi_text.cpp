#include "sound/win/ansi_text.h"

#include <windows.h>

#include "engine/win/system_message.h"

namespace velmora::win {

std::optional<std::string> Utf8ToAnsi(std::string_view utf8) {
  if (utf8.empty()) return std::string();
  const std::wstring wide = Widen(std::string(utf8));
  if (wide.empty()) return std::nullopt;  // not UTF-8
  BOOL usedDefault = FALSE;
  const int n = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(),
                                    static_cast<int>(wide.size()), nullptr, 0, nullptr, &usedDefault);
  if (n <= 0 || usedDefault) return std::nullopt;
  std::string out(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()),
                      out.data(), n, nullptr, &usedDefault);
  if (usedDefault) return std::nullopt;
  return out;
}

std::wstring AnsiToWide(std::string_view ansi) {
  if (ansi.empty()) return {};
  const int n = MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), nullptr, 0);
  if (n <= 0) return {};
  std::wstring out(static_cast<size_t>(n), L'\0');
  MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), out.data(), n);
  return out;
}

std::string AnsiToUtf8(std::string_view ansi) { return Narrow(AnsiToWide(ansi)); }

}  // namespace velmora::win
