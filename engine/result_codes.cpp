#include "engine/result_codes.h"

#include <array>
#include <string_view>

namespace velmora {
namespace {

// Texts by error number -1..-12 (index = -number - 1). -6 and -10 are built
// around their parameter below.
constexpr std::array<std::string_view, 12> kTexts = {
    "初期化されていません。",
    "ファイルをオープンできません。",
    "ファイルが壊れているか、対応していないバージョンです。",
    "フレームヘッダが見つかりません。",
    "不正なフレームサイズです。",
    "バッファサイズが足りません。",
    "キャプチャーがユーザーの操作によりキャンセルされました。",
    "8ビット動画はType1でしかサポートしていません。",
    "UserCaptureはType1でしか使えません。",
    "APIErr:",
    "ファイルがありません。",
    "サイズが0です。",
};

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
