#include "engine/result_codes.h"

#include <array>
#include <string_view>

namespace velmora {
namespace {

// Texts by error number -1..-12 (index = -number - 1).
constexpr std::array<std::string_view, 12> kTexts = {
#define VELMORA_ENGINE_ERROR_TEXT(name, number, text) text,
    VELMORA_ENGINE_ERRORS(VELMORA_ENGINE_ERROR_TEXT)
#undef VELMORA_ENGINE_ERROR_TEXT
};
// The index above relies on the list running -1, -2, ... without gaps.
constexpr bool ListedInOrder() {
  int32_t expected = -1;
#define VELMORA_ENGINE_ERROR_CHECK(name, number, text) \
  if ((number) != expected--) return false;
  VELMORA_ENGINE_ERRORS(VELMORA_ENGINE_ERROR_CHECK)
#undef VELMORA_ENGINE_ERROR_CHECK
  return true;
}
static_assert(ListedInOrder());
}  // namespace

int32_t MakeResultCode(int32_t number, int32_t parameter) {
  if (number >= 0) return 0;
  uint32_t code = 0x80000000u | ((static_cast<uint32_t>(parameter) & 0xFFFFFu) << 8) |
                  (static_cast<uint32_t>(number) & 0xFFu);
  return static_cast<int32_t>(code);
}

int32_t ResultNumber(int32_t code) { return (code & 0xFF) - 256; }

int32_t ResultParameter(int32_t code) { return (code >> 8) & 0xFFFFF; }

std::string GetError(int32_t code, const SystemMessageLookup& lookup) {
  const int32_t number = ResultNumber(code);
  if (number < -12 || number > -1) return {};
  std::string text(kTexts[static_cast<size_t>(-number - 1)]);
  if (number == kErrBufferTooSmall) {
    text += "\r\n最低";
    text += std::to_string(ResultParameter(code));
    text += "MB必要です。";
  } else if (number == kErrApi && lookup) {
    text += lookup(static_cast<uint32_t>(ResultParameter(code)));
  }
  return text;
}

}  // namespace velmora
