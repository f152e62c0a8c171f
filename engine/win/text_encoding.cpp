#include "engine/win/text_encoding.h"

#include <windows.h>

namespace velmora::win {

std::wstring Widen(const std::string& utf8) {
  if (utf8.empty()) return {};
  const int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), int(utf8.size()), nullptr, 0);
  std::wstring w(size_t(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), int(utf8.size()), w.data(), n);
  return w;
}

std::string Narrow(const std::wstring& utf16) {
  if (utf16.empty()) return {};
  const int n = WideCharToMultiByte(CP_UTF8, 0, utf16.data(), int(utf16.size()), nullptr, 0,
                                    nullptr, nullptr);
  std::string s(size_t(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, utf16.data(), int(utf16.size()), s.data(), n, nullptr, nullptr);
  return s;
}

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

std::string AnsiToUtf8(const char* ansi) {
  if (!ansi || !*ansi) return {};
  const int n = ::MultiByteToWideChar(CP_ACP, 0, ansi, -1, nullptr, 0);
  if (n <= 1) return {};
  std::wstring w(size_t(n), L'\0');
  ::MultiByteToWideChar(CP_ACP, 0, ansi, -1, w.data(), n);
  w.resize(size_t(n - 1));
  return Narrow(w);
}

std::string WideToAnsi(const wchar_t* wide) {
  if (!wide || !*wide) return {};
  const int n = ::WideCharToMultiByte(CP_ACP, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  if (n <= 1) return {};
  std::string a(size_t(n), '\0');
  ::WideCharToMultiByte(CP_ACP, 0, wide, -1, a.data(), n, nullptr, nullptr);
  a.resize(size_t(n - 1));
  return a;
}

std::string Utf8ToAnsi(const std::string& utf8) { return WideToAnsi(Widen(utf8).c_str()); }

void CopyAnsi(const std::string& ansi, char* out, size_t capacity) {
  if (!out || capacity == 0) return;
  size_t n = 0;
  while (n < ansi.size()) {
    const size_t step = ::IsDBCSLeadByte(BYTE(ansi[n])) && n + 1 < ansi.size() ? 2 : 1;
    if (n + step > capacity - 1) break;
    n += step;
  }
  ansi.copy(out, n);
  out[n] = '\0';
}

}  // namespace velmora::win
