// Status codes of the AVI writer library and their texts: one table yields
// both. 0 is success; every failure is a distinct negative number.
#pragma once
#include <cstdint>
#include <string>

namespace velmora::avi {

enum AviStatus : int32_t {
  kAviOk = 0,
  kAviBadParameter = -1,
  kAviCannotCreate = -2,
  kAviWriteFailed = -3,
  kAviNotOpen = -4,
  kAviAlreadyOpen = -5,
  kAviCompressorMissing = -6,
  kAviCompressFailed = -7,
  kAviCannotOpenAvi = -8,
  kAviBrokenAvi = -9,
  kAviCannotOpenWave = -10,
  kAviBrokenWave = -11,
  kAviWaveNotPcm = -12,
  kAviCannotReplace = -13,
  kAviOutOfMemory = -14,
};

inline constexpr int32_t kAviFirstStatus = kAviOutOfMemory;  // lowest known code

// The Japanese text for a status (UTF-8). Unknown codes get a text that
// carries the number, so nothing the library returns is ever shown blank.
std::string AviStatusText(int32_t status);

}  // namespace velmora::avi
