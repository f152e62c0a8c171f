// QRX.dll: the frame compressor as a plain C export, so a user can replace
// the DLL and any program can call it without C++ types crossing over.
#include <cstdint>

#include "engine/frame_codec.h"

extern "C" __declspec(dllexport) int32_t
    Compress(uint8_t* out, const uint8_t* cur, const uint8_t* prev, int32_t units) {
  return velmora::CompressFrame(out, cur, prev, units);
}
