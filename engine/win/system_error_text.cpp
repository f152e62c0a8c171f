#include "engine/win/system_error_text.h"

#include <windows.h>

#include "engine/result_codes.h"
#include "engine/win/text_encoding.h"

namespace velmora::win {

std::string SystemMessage(uint32_t errorNumber) {
  wchar_t buf[1260] = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, errorNumber,
                 MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), buf, 1260, nullptr);
  buf[1259] = 0;
  return Narrow(buf);
}

std::string ResultText(int32_t code) { return GetError(code, SystemMessage); }

}  // namespace velmora::win
