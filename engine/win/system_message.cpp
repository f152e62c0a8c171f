#include "engine/win/system_message.h"

#include <windows.h>

namespace velmora::win {

std::string SystemMessage(uint32_t errorNumber) {
  wchar_t buf[1260] = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                 errorNumber, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), buf, 1260, nullptr);
  buf[1259] = 0;
  return Narrow(buf);
}

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

}  // namespace velmora::win
