// The platform's message text for a system error number, as UTF-8.
#pragma once
#include <cstdint>
#include <string>

namespace velmora::win {

// Language-neutral text from the system message table, no inserts, cut at the
// first NUL, keeping the platform's trailing line break. Empty when unknown.
std::string SystemMessage(uint32_t errorNumber);

// UTF-8 <-> UTF-16 at the Win32 boundary.
std::wstring Widen(const std::string& utf8);
std::string Narrow(const std::wstring& utf16);

}  // namespace velmora::win
