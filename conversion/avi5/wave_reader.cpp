#include "conversion/avi5/wave_reader.h"

#include <algorithm>
#include <array>

#include "conversion/avi5/riff_writer.h"
#include "engine/byte_order.h"

namespace velmora::avi {

namespace {
constexpr uint16_t kFormatPcm = 1;
constexpr uint16_t kFormatExtensible = 0xFFFE;
constexpr uint32_t kMaxFmtBytes = 1024;

bool ReadExact(ByteSource& src, void* dst, size_t n) { return src.Read(dst, n) == n; }

// A format chunk is PCM when its tag says so, or when it is the extensible
// form whose sub-format GUID begins with the PCM tag.
AviStatus CheckFormat(WaveInfo& w) {
  const std::vector<uint8_t>& f = w.fmt;
  if (f.size() < 16) return kAviBrokenWave;
  const auto tag = uint16_t(LoadLE16(&f[0]));
  w.channels = uint16_t(LoadLE16(&f[2]));
  w.sampleRate = LoadLE32U(&f[4]);
  w.bytesPerSecond = LoadLE32U(&f[8]);
  w.blockAlign = uint16_t(LoadLE16(&f[12]));
  w.bitsPerSample = uint16_t(LoadLE16(&f[14]));
  bool pcm = tag == kFormatPcm;
  if (tag == kFormatExtensible && f.size() >= 40) pcm = LoadLE16(&f[24]) == kFormatPcm;
  if (!pcm) return kAviWaveNotPcm;
  if (w.channels == 0 || w.sampleRate == 0 || w.bitsPerSample == 0 || w.bitsPerSample > 32 ||
      w.blockAlign != w.channels * ((w.bitsPerSample + 7) / 8) ||
      w.bytesPerSecond != uint64_t{w.sampleRate} * w.blockAlign)
    return kAviBrokenWave;
  return kAviOk;
}
}  // namespace

AviStatus ParseWave(ByteSource& src, uint64_t fileSize, WaveInfo& out) {
  out = WaveInfo{};
  std::array<uint8_t, 12> head{};
  if (fileSize < head.size() || !src.Seek(0) || !ReadExact(src, head.data(), head.size()))
    return kAviBrokenWave;
  if (LoadLE32U(&head[0]) != FourCc("RIFF") || LoadLE32U(&head[8]) != FourCc("WAVE"))
    return kAviBrokenWave;

  bool haveFmt = false, haveData = false;
  uint64_t pos = head.size();
  while (pos + 8 <= fileSize && !(haveFmt && haveData)) {
    std::array<uint8_t, 8> ch{};
    if (!src.Seek(pos) || !ReadExact(src, ch.data(), ch.size())) return kAviBrokenWave;
    const uint32_t id = LoadLE32U(&ch[0]);
    const uint64_t size = LoadLE32U(&ch[4]);
    const uint64_t body = pos + 8;
    const uint64_t left = fileSize - body;
    if (id == FourCc("fmt ")) {
      if (size > kMaxFmtBytes || size > left) return kAviBrokenWave;
      out.fmt.resize(size_t(size));
      if (!ReadExact(src, out.fmt.data(), out.fmt.size())) return kAviBrokenWave;
      haveFmt = true;
    } else if (id == FourCc("data")) {
      // A recording cut short leaves a size larger than the file: keep what is there.
      out.dataOffset = body;
      out.dataBytes = std::min(size, left);
      haveData = true;
    } else if (size > left) {
      return kAviBrokenWave;
    }
    pos = body + size + (size & 1);
  }
  if (!haveFmt || !haveData) return kAviBrokenWave;
  const AviStatus st = CheckFormat(out);
  if (st != kAviOk) return st;
  out.dataBytes -= out.dataBytes % out.blockAlign;
  return kAviOk;
}

}  // namespace velmora::avi
