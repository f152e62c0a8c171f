// Any bytes as a .QRT file: decoding gives a record or nothing, never a read
// outside the input; a record it gives encodes back to the bytes it read.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "app/capture_settings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto codec = velmora::IdentityAnsiCodec();
  const auto s = velmora::DecodeSettings(std::span(data, size), codec);
  if (!s) return 0;
  const auto again = velmora::EncodeSettings(*s, codec);
  // The compressor-options address is written as 0 whatever was read.
  if (!again || again->size() > size || (s->CompressorOptionsAddress == 0 &&
                                         !std::equal(again->begin(), again->end(), data))) {
    std::abort();
  }
  return 0;
}
