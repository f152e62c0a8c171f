#include "sound/sound_formats.h"

#include <cstddef>

#include "engine/numbers.h"

namespace velmora::sound {

const std::array<std::string_view, 12> kSoundFormatLabels = {
    "11.025kHz モノラル 8 ビット",  "11.025kHz モノラル 16 ビット", "11.025kHz ステレオ 8 ビット",
    "11.025kHz ステレオ 16 ビット", "22.050kHz モノラル 8 ビット",  "22.050kHz モノラル 16 ビット",
    "22.050kHz ステレオ 8 ビット",  "22.050kHz ステレオ 16 ビット", "44.100kHz モノラル 8 ビット",
    "44.100kHz モノラル 16 ビット", "44.100kHz ステレオ 8 ビット",  "44.100kHz ステレオ 16 ビット",
};

std::string SoundFormatListText() {
  std::string out;
  for (size_t i = 0; i < kSoundFormatLabels.size(); ++i) {
    if (i) out += "\r\n";
    out += kSoundFormatLabels[i];
  }
  return out;
}

namespace {

// Bytes of one UTF-8 character starting at s[i]; a malformed byte counts as
// one character of its own, so positions stay defined for any input.
size_t CharBytes(std::string_view s, size_t i) {
  const auto c = static_cast<uint8_t>(s[i]);
  const size_t len = c < 0x80           ? 1
                     : (c >> 5) == 0x6  ? 2
                     : (c >> 4) == 0xE  ? 3
                     : (c >> 3) == 0x1E ? 4
                                        : 0;
  if (len == 0 || i + len > s.size()) return 1;
  for (size_t k = 1; k < len; ++k) {
    if ((static_cast<uint8_t>(s[i + k]) & 0xC0) != 0x80) return 1;
  }
  return len;
}

// Characters from1 .. from1+count-1 (counting from 1) as bytes.
std::string_view Chars(std::string_view s, size_t from1, size_t count) {
  size_t i = 0;
  for (size_t n = 1; n < from1 && i < s.size(); ++n) i += CharBytes(s, i);
  size_t j = i;
  for (size_t n = 0; n < count && j < s.size(); ++n) j += CharBytes(s, j);
  return s.substr(i, j - i);
}

}  // namespace

SoundFormat ParseSoundLabel(std::string_view utf8Label) {
  SoundFormat f;
  f.samplesPerSec = LeadingThousandsTruncated(Chars(utf8Label, 1, 6));
  f.channels = Chars(utf8Label, 11, 2) == "ｽﾃ" ? 2 : 1;
  f.bitsPerSample = LeadingInteger(Chars(utf8Label, 16, std::string_view::npos));
  return f;
}

}  // namespace velmora::sound
