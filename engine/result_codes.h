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

enum EngineError : int32_t {
  kErrNotInitialised = -1,
  kErrCannotOpen = -2,
  kErrBrokenFile = -3,
  kErrNoFrameHeader = -4,
  kErrBadFrameSize = -5,
  kErrBufferTooSmall = -6,
  kErrCancelled = -7,
  kErrEightBitType1Only = -8,
  kErrUserCaptureType1Only = -9,
  kErrApi = -10,
  kErrNoFile = -11,
  kErrZeroSize = -12,
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
