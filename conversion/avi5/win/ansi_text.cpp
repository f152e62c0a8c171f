#include "conversion/avi5/win/ansi_text.h"

#include <windows.h>

#include "engine/win/system_message.h"

namespace velmora::win {

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
