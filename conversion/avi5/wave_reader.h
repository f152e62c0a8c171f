// Parses a RIFF WAVE file for merging into an AVI. The input is hostile:
// every chunk header is checked against what is left of the file, and only
// linear PCM is accepted (the AVI sound stream stores its format verbatim
// and is cut into chunks by whole sample blocks).
#pragma once
#include <cstdint>
#include <vector>

#include "conversion/avi5/avi_status.h"
#include "engine/byte_source.h"

namespace velmora::avi {

struct WaveInfo {
  std::vector<uint8_t> fmt;  // the 'fmt ' chunk data
  uint16_t channels = 0;
  uint32_t sampleRate = 0;
  uint32_t bytesPerSecond = 0;
  uint16_t blockAlign = 0;
  uint16_t bitsPerSample = 0;
  uint64_t dataOffset = 0;  // position of the first sample byte
  uint64_t dataBytes = 0;   // whole blocks only, never past the file's end
};

// `fileSize` bounds every chunk. kAviBrokenWave for anything malformed,
// kAviWaveNotPcm for a well-formed wave in another coding.
AviStatus ParseWave(ByteSource& src, uint64_t fileSize, WaveInfo& out);

}  // namespace velmora::avi
