// Hostile input for the two readers of the sound merge: the same bytes go
// to the wave parser and to the AVI reader; neither may crash or read out
// of bounds, whatever they answer.
#include <cstddef>
#include <cstdint>

#include "conversion/avi5/avi_reader.h"
#include "conversion/avi5/wave_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace velmora;
  MemoryByteSource src({data, size});
  avi::WaveInfo w;
  if (avi::ParseWave(src, size, w) == avi::kAviOk &&
      (w.dataOffset + w.dataBytes > size || w.blockAlign == 0))
    __builtin_trap();
  avi::AviVideoStream v;
  if (avi::ReadAviVideo(src, size, v) == avi::kAviOk)
    for (const auto& c : v.chunks)
      if (c.offset + c.size > size) __builtin_trap();
  return 0;
}
