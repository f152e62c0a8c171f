// The 44-byte header of a plain PCM wave file: RIFF, a 16-byte "fmt " chunk
// and the "data" chunk's head. The recorder writes it in front of the samples
// it kept in the temporary file.
#pragma once
#include <array>
#include <cstdint>

#include "engine/byte_order.h"

namespace velmora::sound {

inline constexpr size_t kWavHeaderBytes = 44;

struct PcmFormat {
  int32_t samplesPerSec = 0;
  int32_t channels = 0;
  int32_t bitsPerSample = 0;
  constexpr int32_t BlockAlign() const { return channels * bitsPerSample / 8; }
};

// `dataBytes` must leave room for the header within 32 bits (the recorder
// refuses longer recordings before it starts).
constexpr std::array<uint8_t, kWavHeaderBytes> EncodeWavHeader(const PcmFormat& f,
                                                               uint32_t dataBytes) {
  std::array<uint8_t, kWavHeaderBytes> out{};
  ByteWriter w(out);
  w.Tag("RIFF");
  w.Int32(static_cast<int32_t>(dataBytes + 36));  // RIFF size: everything after this field
  w.Tag("WAVE");
  w.Tag("fmt ");
  w.Int32(16);                                     // fmt chunk size
  w.Int16(1);                                      // wFormatTag: PCM
  w.Int16(static_cast<int16_t>(f.channels));       // nChannels
  w.Int32(f.samplesPerSec);                        // nSamplesPerSec
  w.Int32(f.samplesPerSec * f.BlockAlign());       // nAvgBytesPerSec
  w.Int16(static_cast<int16_t>(f.BlockAlign()));   // nBlockAlign
  w.Int16(static_cast<int16_t>(f.bitsPerSample));  // wBitsPerSample
  w.Tag("data");
  w.Int32(static_cast<int32_t>(dataBytes));
  return out;
}

}  // namespace velmora::sound
