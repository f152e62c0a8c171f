#include "engine/win/ansi_text.h"

#include <windows.h>

namespace velmora::win {
namespace {

std::optional<std::wstring> ToWide(UINT codePage, const std::string& s) {
  if (s.empty()) return std::wstring();
  const int n = ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, s.data(),
                                      static_cast<int>(s.size()), nullptr, 0);
  if (n <= 0) return std::nullopt;
  std::wstring w(static_cast<size_t>(n), L'\0');
  ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, s.data(), static_cast<int>(s.size()),
                        w.data(), n);
  return w;
}

std::optional<std::string> FromWide(UINT codePage, const std::wstring& w) {
  if (w.empty()) return std::string();
  BOOL usedDefault = FALSE;
  BOOL* usedDefaultOut = codePage == CP_UTF8 ? nullptr : &usedDefault;
  const DWORD flags = codePage == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
  const int n = ::WideCharToMultiByte(codePage, flags, w.data(), static_cast<int>(w.size()),
                                      nullptr, 0, nullptr, usedDefaultOut);
  if (n <= 0 || usedDefault) return std::nullopt;
  std::string s(static_cast<size_t>(n), '\0');
  ::WideCharToMultiByte(codePage, flags, w.data(), static_cast<int>(w.size()), s.data(), n, nullptr,
                        nullptr);
  return s;
}

}  // namespace

std::optional<std::string> AnsiFromUtf8(const std::string& utf8) {
  const auto w = ToWide(CP_UTF8, utf8);
  return w ? FromWide(CP_ACP, *w) : std::nullopt;
}

std::optional<std::string> Utf8FromAnsi(const std::string& ansi) {
  const auto w = ToWide(CP_ACP, ansi);
  return w ? FromWide(CP_UTF8, *w) : std::nullopt;
}

std::optional<std::wstring> WideFromAnsi(const std::string& ansi) { return ToWide(CP_ACP, ansi); }

}  // namespace velmora::win
