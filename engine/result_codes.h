// Engine result codes: one packing rule and one table of texts.
//
// A result code is 0 for success or a negative 32-bit value: bit 31 set,
// bits 27..8 a 20-bit parameter (megabytes needed, a system error number,
// frame slots done), bits 7..0 the low byte of an error number -12..-1.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

namespace velmora {

// The one list of error numbers and their texts (UTF-8). -6 and -10 are
// completed with their parameter by GetError.
#define VELMORA_ENGINE_ERRORS(X)                                                   \
  X(kErrNotInitialised, -1, "初期化されていません。")                              \
  X(kErrCannotOpen, -2, "ファイルをオープンできません。")                          \
  X(kErrBrokenFile, -3, "ファイルが壊れているか、対応していないバージョンです。")  \
  X(kErrNoFrameHeader, -4, "フレームヘッダが見つかりません。")                     \
  X(kErrBadFrameSize, -5, "不正なフレームサイズです。")                            \
  X(kErrBufferTooSmall, -6, "バッファサイズが足りません。")                        \
  X(kErrCancelled, -7, "キャプチャーがユーザーの操作によりキャンセルされました。") \
  X(kErrEightBitType1Only, -8, "8ビット動画はType1でしかサポートしていません。")   \
  X(kErrUserCaptureType1Only, -9, "UserCaptureはType1でしか使えません。")          \
  X(kErrApi, -10, "APIErr:")                                                       \
  X(kErrNoFile, -11, "ファイルがありません。")                                     \
  X(kErrZeroSize, -12, "サイズが0です。")

enum EngineError : int32_t {
#define VELMORA_ENGINE_ERROR_ENUM(name, number, text) name = number,
  VELMORA_ENGINE_ERRORS(VELMORA_ENGINE_ERROR_ENUM)
#undef VELMORA_ENGINE_ERROR_ENUM
};

// Packs an error number and its parameter; a number >= 0 packs to 0 (success).
int32_t MakeResultCode(int32_t number, int32_t parameter = 0);

// The error number (-12..-1 for known codes, other values otherwise) and the
// parameter carried by a packed code.
int32_t ResultNumber(int32_t code);
int32_t ResultParameter(int32_t code);

// Text of the platform's message table for a system error number (UTF-8),
// including the line break the platform puts at its end.
using SystemMessageLookup = std::function<std::string(uint32_t errorNumber)>;

// The Japanese text shown to the user for a result code (UTF-8); empty for 0
// and for any number outside -12..-1. The -10 text asks `lookup` for the
// system message; without a lookup that part is empty.
std::string GetError(int32_t code, const SystemMessageLookup& lookup = {});

}  // namespace velmora
